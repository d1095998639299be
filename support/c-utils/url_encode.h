/// \file
/// Percent-encoding of a string (RFC 3986 section 2.1). The bytes that stay plain are this system's
/// own set: the safe and extra ones of RFC 1738, except "'".
#pragma once

#pragma GCC visibility push(default)

/// Percent-encodes all but ASCII letters, digits and the characters of "$-_.+!*(),".
///
/// Every other byte becomes "%" and its two upper-case hexadecimal digits.
///
/// \param source the string
/// \param destination receives the result; needs up to three times the length of \p source and a
///     NUL
/// \return \p destination.
char *url_encode(const char *source, char *destination);

#pragma GCC visibility pop
