/// \file
/// Numbers of the command line.
#pragma once

namespace corvella {

/// Reads digits with at most one decimal point, in any locale. No sign, blank or exponent.
/// \return false for anything else. Infinite or not a number if \p text has hundreds of digits.
bool parse_decimal(const char *text, double &number);

} // namespace corvella
