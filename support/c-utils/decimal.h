/// \file
/// Decimal integers as the standard library reads them, but defined for every text: a number
/// outside 32 bits becomes the nearest one inside. Internal to the layer.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "support/c-utils/characters.h"

namespace corvella {

/// Reads white space, a sign and digits at \p cursor and moves it behind them.
/// \return whether a digit was read; if not, neither argument is changed.
inline bool scan_decimal(const char *&cursor, std::int32_t &value)
{
    // The C library itself may take byte 0xff for the end of a file.
    const char *const number_text = skip_white_space(cursor);
    const int saved_errno = errno;
    char *end = nullptr;
    const long long number = std::strtoll(number_text, &end, 10);
    errno = saved_errno;
    if (end == number_text) {
        return false;
    }
    cursor = end;
    value = number < INT32_MIN   ? INT32_MIN
            : number > INT32_MAX ? INT32_MAX
                                 : static_cast<std::int32_t>(number);
    return true;
}

/// \return the number at the start of \p text, 0 when there is none.
inline std::int32_t decimal_or_zero(const char *text)
{
    std::int32_t value = 0;
    scan_decimal(text, value);
    return value;
}

} // namespace corvella
