/// \file
/// What is made of the tables of commands and options for others to read.
#pragma once

#include <string>

namespace corvella {

/// \return the lists of commands and options for the manual page, in mdoc.
std::string manual_lists();

/// \return the whole file of completions.
std::string bash_completion();
std::string zsh_completion();

} // namespace corvella
