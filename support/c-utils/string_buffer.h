/// \file
/// A growable string.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// A growable string that owns its bytes. A zeroed record is a valid empty buffer; only the
/// functions below change its fields.
struct string_buffer {
    char *data;            ///< `length` bytes and a NUL; null until something is appended
    std::int32_t capacity; ///< bytes allocated at `data`
    std::uint32_t length;  ///< bytes of the string, not counting the NUL
};

/// Appends printf-style text of any length.
///
/// If the text needs more than capacity - length - 2 bytes, the data grows to the text's length +
/// length + 128 bytes.
///
/// On purpose: a formatting error, such as an invalid wide character, counts as 4095 characters.
/// The text formatted so far is appended, and NUL bytes up to that length. A text too long for the
/// formatter to count is not such an error: it throws.
///
/// \param buffer the buffer
/// \param format a printf format, followed by its arguments, which must not point into the
///     buffer's own data
/// \return the new length.
/// \throws std::bad_alloc if memory is exhausted, or if the new size does not fit into the record's
/// 32-bit fields. The buffer is then unchanged.
[[gnu::format(printf, 2, 3)]] std::uint32_t string_buffer_append_format(string_buffer *buffer,
                                                                        const char *format, ...);

/// Returns the string of a buffer.
/// \param buffer the buffer, which keeps the ownership
/// \return the string, valid until the next append or free; null if nothing was ever appended.
char *string_buffer_data(string_buffer *buffer);

/// Releases the data and zeroes the record, which can then be used again.
/// \param buffer the buffer
void string_buffer_free(string_buffer *buffer);

#pragma GCC visibility pop
