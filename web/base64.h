/// \file
/// Base64 (RFC 4648 section 4), with fill characters and without line breaks.
#pragma once

#pragma GCC visibility push(default)

/// \return the length of \p n bytes in base64, the NUL not counted: ((n + 2) / 3) * 4, where the
/// division truncates towards zero; wrapped to 32 bits where it does not fit them (\p n above
/// 1,610,612,733 or below -1,610,612,740).
int base64_encoded_length(int n);

/// Encodes \p n bytes of \p source into \p destination, which must hold base64_encoded_length() + 1
/// bytes (as a number that has not wrapped), and ends it with NUL. An \p n below 1 gives "", and
/// \p source may then be null. \return \p destination.
char *base64_encode(const void *source, int n, char *destination);

#pragma GCC visibility pop
