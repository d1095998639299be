/// \file
/// One pass over the arguments of the program.
#pragma once

#include <string>
#include <vector>

#include "support/options.h"

namespace corvella {

enum argument_kind {
    ARGUMENT_END,
    ARGUMENT_OPERAND,
    ARGUMENT_OPTION,
    ARGUMENT_ERROR,
};

struct scanned_argument {
    argument_kind kind;
    const char *element; ///< as typed
    int code;            ///< of an option, as in the table
    char *argument;      ///< of an option that takes one; otherwise null
    std::string error;   ///< names the option without anything after its "="
};

/// Uses the parser's global state, so only one scan runs at a time.
struct argument_scan {
    int count;
    char **vector;
    const std::vector<long_option> &table;
    bool has_operands_only; ///< nothing that follows is an option
};

/// Begins a scan after the program's name. Keeps the order of \p vector.
argument_scan begin_scan(int count, char **vector, const std::vector<long_option> &table);

/// Returns the next argument. After an error the scan continues with the next element.
scanned_argument next_argument(argument_scan &scan);

} // namespace corvella
