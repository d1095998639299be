/// \file
/// The program's commands. Each takes the command line and returns the exit status.
#pragma once

#include "tool/command_line.h"
#include "tool/exit_status.h"

exit_status get_command(const command_line &line);
exit_status post_command(const command_line &line);
exit_status update_command(const command_line &line);
exit_status describe_command(const command_line &line);
exit_status open_command(const command_line &line);
