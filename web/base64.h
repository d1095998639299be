/// \file
/// Base64 (RFC 4648 section 4), with fill characters and without line breaks.
#pragma once

#pragma GCC visibility push(default)

/// Returns the length of the base64 of \p n bytes, not counting the NUL.
/// \param n the number of bytes, any integer
/// \return ((n + 2) / 3) * 4, where the division truncates towards zero. The result wraps to 32
/// bits if \p n is above 1,610,612,733 or below -1,610,612,740.
int base64_encoded_length(int n);

/// Encodes bytes in base64.
/// \param source the bytes; may be null if \p n is below 1
/// \param n the number of bytes; a number below 1 gives ""
/// \param destination receives the base64 and a NUL; needs base64_encoded_length() + 1 bytes, a
///     number that must not have wrapped
/// \return \p destination.
char *base64_encode(const void *source, int n, char *destination);

#pragma GCC visibility pop
