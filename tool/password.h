/// \file
/// What is done about the password of the command line.
#pragma once

#include <cstddef>

#include "tool/command_line.h"

/// Overwrites a text with NUL, in a way that no compiler leaves out because nobody reads it again.
void wipe(char *text, std::size_t size);

/// Reads the password from standard input if the command line leaves it there. Call it just before
/// the exchange, after all usage errors. \return false after reporting an error.
bool obtain_password(command_line &line);
