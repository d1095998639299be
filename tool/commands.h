/// \file
/// The program's commands. Each takes the command line and returns the exit status; those that talk
/// to the web wipe the password as soon as nothing needs it any more.
#pragma once

#include "tool/command_line.h"
#include "tool/exit_status.h"

namespace corvella {

exit_status get_command(command_line &line);
exit_status post_command(command_line &line);
exit_status update_command(command_line &line);
exit_status describe_command(command_line &line);
exit_status open_command(command_line &line);

} // namespace corvella
