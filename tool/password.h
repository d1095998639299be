/// \file
/// What is done about the password of the command line.
#pragma once

#include <cstddef>

/// Overwrites a text with NUL, in a way that no compiler leaves out because nobody reads it again.
void wipe(char *text, std::size_t size);
