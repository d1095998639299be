/// \file
/// A text put together in a buffer that cuts it. Internal to the facility: it allocates nothing and
/// costs no formatting.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace corvella {

/// Bytes in a caller's buffer; not terminated until end_text().
struct bounded_text {
    char *bytes;
    std::size_t room; ///< of the buffer, a NUL not counted
    std::size_t length;
};

/// Appends as much of \p count bytes as fits.
inline void append_bytes(bounded_text &text, const char *bytes, std::size_t count)
{
    count = std::min(count, text.room - text.length);
    std::memcpy(text.bytes + text.length, bytes, count);
    text.length += count;
}

inline void append_text(bounded_text &text, const char *appended)
{
    append_bytes(text, appended, std::strlen(appended));
}

/// Appends as many of \p count bytes \p c as fit.
inline void append_run(bounded_text &text, char c, std::size_t count)
{
    count = std::min(count, text.room - text.length);
    std::memset(text.bytes + text.length, c, count);
    text.length += count;
}

/// Stores the NUL, for which the buffer has a byte beyond `room`.
inline void end_text(bounded_text &text)
{
    text.bytes[text.length] = '\0';
}

/// \return the length of \p text without what it has of \p characters at its end.
inline std::size_t length_without_trailing(const char *text, const char *characters)
{
    std::size_t length = std::strlen(text);
    while (length > 0 && std::strchr(characters, text[length - 1]) != nullptr) {
        --length;
    }
    return length;
}

} // namespace corvella
