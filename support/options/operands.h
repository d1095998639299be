/// \file
/// Which elements are operands, and their order. Internal to the option parser.
#pragma once

#include <cstdint>

#include "support/options/number_text.h"

namespace corvella {

inline bool is_operand(const char *element, bool long_only)
{
    if (long_only && element[0] == '+') {
        return false;
    }
    return element[0] != '-' || element[1] == '\0' ||
           (may_begin_number(element[1]) && reads_as_number(element));
}

inline bool is_two_dashes(const char *element)
{
    return element[0] == '-' && element[1] == '-' && element[2] == '\0';
}

/// Returns how many of the first \p count elements are operands, up to an option or a null.
std::int32_t operand_run(char *const *elements, std::int32_t count, bool long_only);

/// Moves the option at \p element, of one element or two, in front of the \p skipped operands that
/// precede it.
void move_in_front(char **element, int used_elements, std::int32_t skipped);

} // namespace corvella
