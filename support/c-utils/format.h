/// \file
/// printf-style formatting into exactly sized blocks and into bounded buffers.
#pragma once

#include <cstdarg>
#include <cstddef>

#pragma GCC visibility push(default)

/// Formats into a new block of exactly the needed size, at least one byte.
/// \param format a printf format
/// \param arguments its arguments; used as by vsnprintf, so the caller may only end the list after
/// \return the string, to be released with checked_free(); "" on a formatting error.
/// \throws std::bad_alloc if memory is exhausted or the length does not fit into an int.
[[gnu::format(printf, 1, 0)]] char *format_string_alloc(const char *format, std::va_list arguments);

/// Calls format_string_alloc() with the arguments that follow \p format.
/// \param format a printf format, followed by its arguments
/// \return the string, to be released with checked_free(); "" on a formatting error.
/// \throws std::bad_alloc as format_string_alloc() does.
[[gnu::format(printf, 1, 2)]] char *format_string_new(const char *format, ...);

/// Writes at most \p size bytes, including the NUL, and always stores NUL in byte \p size - 1.
/// \param destination receives the string; may be null if \p size is 0
/// \param size the size of \p destination in bytes; 0 writes nothing
/// \param format a printf format, followed by its arguments, which must not point into
///     \p destination
/// \return the length before truncation; negative on a formatting error, which leaves "".
[[gnu::format(printf, 3, 4)]] int format_string_bounded(char *destination, std::size_t size,
                                                        const char *format, ...);

#pragma GCC visibility pop
