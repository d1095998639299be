/// \file
/// Bounded and length-prefixed copies, and insertion in place.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Copies a length-prefixed string: the length byte and as many bytes as it says (1 to 256 in all).
/// The areas may overlap. \return \p destination.
unsigned char *copy_counted_string(unsigned char *destination, const unsigned char *source);

/// Copies at most \p size bytes of \p source and fills the rest of \p destination with NUL. The
/// last byte is always NUL, so that \p size - 1 characters are kept. Nothing is written when
/// \p size is 0 or \p destination is null; a null \p source counts as "". The areas must not
/// overlap. \return \p destination.
char *copy_string_bounded(char *destination, const char *source, std::size_t size);

/// Inserts \p text into \p target before the character at \p location, in place; the target's
/// length appends. The target must have room for both lengths and a NUL; \p text must not point
/// into it.
///
/// Deliberately every call prints to standard output: a trace with the resulting target, or, when
/// \p location is negative or beyond the target's length, a complaint with both numbers, and the
/// target is left alone.
void insert_string_into_string(const char *text, char *target, int location);

#pragma GCC visibility pop
