/// \file
/// A lenient reader of decimal numbers.
#pragma once

#pragma GCC visibility push(default)

/// Reads a decimal number at the start of \p text, in single precision at each step: white space, a
/// sign, digits with at most one ".", and "e" or "E" with an integer (white space may stand before
/// it; none counts as 0). Whatever else follows ends the number and is no error. A number out of a
/// float's range becomes infinite or zero. Neither "inf" nor hexadecimal digits are read. The
/// result can differ from strtof's in the last places. What counts as white space depends on the
/// locale, and nothing else does.
/// \return 1 with the number in \p result; 0, with \p result untouched, when no digit was read.
int parse_float(const char *text, float *result);

#pragma GCC visibility pop
