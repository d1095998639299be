/// \file
/// A growable text.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// A growable text that owns its bytes. All zero is a valid empty buffer; the fields are changed by
/// the functions below only.
struct string_buffer {
    char *data;            ///< `length` bytes and a NUL; null while nothing was ever appended
    std::int32_t capacity; ///< bytes allocated at `data`
    std::uint32_t length;  ///< bytes of text, the NUL not counted
};

/// Appends printf-style text, however long; the arguments must not point into the buffer's own
/// data. When the text needs more than capacity - length - 2 bytes, the data grows to the text's
/// length + length + 128 bytes.
///
/// A formatting error (an invalid wide character, say) deliberately counts as 4095 characters:
/// what could be formatted is followed by NUL bytes up to that length. Only a text too long for
/// the formatter to count is not such an error: it throws.
///
/// \return the new length.
/// \throws std::bad_alloc when memory is exhausted, or when the record's 32-bit fields cannot hold
/// the new size. The buffer is then unchanged.
[[gnu::format(printf, 2, 3)]] std::uint32_t string_buffer_append_format(string_buffer *buffer,
                                                                        const char *format, ...);

/// \return the text, which stays the buffer's and is valid until the next append or free; null for
/// a buffer that never grew.
char *string_buffer_data(string_buffer *buffer);

/// Gives the data back and zeroes the record, which can then be used again.
void string_buffer_free(string_buffer *buffer);

#pragma GCC visibility pop
