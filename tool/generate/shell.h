/// \file
/// What the completions of all shells have in common.
#pragma once

#include <string>
#include <vector>

#include "tool/option_table.h"

namespace corvella {

/// \return all options, each name once; of two with one name the one that takes an argument.
std::vector<program_option> all_options();

/// \return \p text with the options that take an argument for its ARGUMENT_OPTIONS, as a pattern of
/// a case: "-output | -proxy".
std::string with_argument_options(std::string text);

/// Whether an argument, or the operand of a command, is a file.
bool is_file(const char *argument);

} // namespace corvella
