/// \file
/// Bounded and length-prefixed copies, and insertion in place.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Copies a length-prefixed string: its length byte and that many bytes, 1 to 256 in all.
/// \param destination receives the copy; may overlap \p source
/// \param source the length byte, followed by the characters
/// \return \p destination.
unsigned char *copy_counted_string(unsigned char *destination, const unsigned char *source);

/// Copies at most \p size - 1 characters and fills the rest with NUL bytes.
/// \param destination receives the copy, always NUL-terminated; null writes nothing
/// \param source must not overlap \p destination; null counts as ""
/// \param size the size of \p destination in bytes; 0 writes nothing
/// \return \p destination.
char *copy_string_bounded(char *destination, const char *source, std::size_t size);

/// Inserts a string into another one, in place.
///
/// On purpose: each call prints to standard output. It prints a trace with the resulting string, or
/// an error with both numbers if \p location is out of range.
///
/// \param text the string to insert; must not point into \p target
/// \param target the string to change; needs room for both lengths and a NUL
/// \param location the index in \p target of the character to insert in front of. The length of
///     \p target appends; a negative or greater number leaves \p target unchanged.
void insert_string_into_string(const char *text, char *target, int location);

#pragma GCC visibility pop
