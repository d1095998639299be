/// \file
/// Percent-encoding of a text (RFC 3986 section 2.1, with this system's own set of plain bytes, the
/// safe and extra ones of RFC 1738 but for "'").
#pragma once

#pragma GCC visibility push(default)

/// Copies \p source, keeping ASCII letters, digits and the characters of "$-_.+!*(),"; every other
/// byte becomes "%" and its two upper-case hexadecimal digits. Needs up to three times the source's
/// length and a NUL. \return \p destination.
char *url_encode(const char *source, char *destination);

#pragma GCC visibility pop
