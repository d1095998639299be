/// \file
/// printf-style formatting into exactly sized blocks and into bounded buffers.
#pragma once

#include <cstdarg>
#include <cstddef>

#pragma GCC visibility push(default)

/// Formats into a new block of exactly the needed size, at least one byte. A formatting error
/// gives an empty text. \p arguments is left as vsnprintf leaves it: the caller may only end it.
/// \return the text, to be given back with checked_free().
/// \throws std::bad_alloc when memory is exhausted or an int cannot count the text.
[[gnu::format(printf, 1, 0)]] char *format_string_alloc(const char *format, std::va_list arguments);

/// format_string_alloc() with the arguments written out.
/// \return the text, to be given back with checked_free().
/// \throws std::bad_alloc as format_string_alloc() does.
[[gnu::format(printf, 1, 2)]] char *format_string_new(const char *format, ...);

/// Prints at most \p size bytes, the NUL included, and always stores NUL in byte \p size - 1.
/// A \p size of 0 writes nothing, and \p destination may then be null. The arguments must not point
/// into the destination.
/// \return the length of the whole, uncut text; negative on a formatting error, which leaves an
/// empty text.
[[gnu::format(printf, 3, 4)]] int format_string_bounded(char *destination, std::size_t size,
                                                        const char *format, ...);

#pragma GCC visibility pop
