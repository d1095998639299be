/// \file
/// The password of the command line.
#pragma once

#include "support/c-utils/wipe.h"
#include "tool/command_line.h"

namespace corvella {

/// Reads the password from standard input if the command line leaves it there. Call it just before
/// the exchange, after all usage errors. \return false after reporting an error.
bool obtain_password(command_line &line);

} // namespace corvella
