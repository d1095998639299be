/// \file
/// A lenient parser of decimal numbers.
#pragma once

#pragma GCC visibility push(default)

/// Parses a decimal number at the start of a string, in single precision at each step.
///
/// The number is optional white space, a sign, digits with at most one ".", and "e" or "E" with an
/// integer, which white space may precede; a missing integer counts as 0. The first other character
/// ends the number and is not an error. A number out of a float's range becomes infinite or zero.
/// "inf" and hexadecimal digits are not accepted. The result can differ from strtof's in the last
/// places. White space depends on the locale; nothing else does.
///
/// \param text the string
/// \param result receives the number; unchanged if there is none
/// \return 1, or 0 if \p text has no digit to read.
int parse_float(const char *text, float *result);

#pragma GCC visibility pop
