/// \file
/// Whether a text is a number. Internal to the option parser.
#pragma once

#include "support/c-utils/characters.h"

namespace corvella {

/// Whether \p text, but for white space at either end, is a floating-point number in any form that
/// scanf's "%f" reads (ISO C): with a sign, an exponent, hexadecimal, infinite or not a number.
/// The point is "." in every locale.
bool reads_as_number(const char *text);

/// Whether a number can go on with \p c behind its sign. Most elements are told from numbers by
/// this.
inline bool may_begin_number(char c)
{
    return is_digit(c) || c == '.' || c == 'i' || c == 'I' || c == 'n' || c == 'N';
}

} // namespace corvella
