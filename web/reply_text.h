/// \file
/// A text of a reply while it is received. Internal to the web client.
#pragma once

#include <cstddef>
#include <memory>

namespace corvella {

/// A growing block of the system allocator.
struct reply_text {
    std::unique_ptr<char, void (*)(void *)> data;
    std::size_t length;
    std::size_t capacity;
    std::size_t populated = 0; ///< the length from which on to populate memory again
};

/// \return an empty text.
reply_text make_reply_text();

/// Makes room for \p count more bytes and a NUL. The block grows by half at least, so that a text
/// of n bytes is moved O(n) bytes in all. \return the place of the first of them.
/// \throws std::bad_alloc when memory is exhausted.
char *reserve_reply_text(reply_text &text, std::size_t count);

/// Ends the text with NUL, cuts its block to the text's size and hands it over, to be given back
/// with free(). \throws std::bad_alloc when memory is exhausted.
char *release_reply_text(reply_text &text);

} // namespace corvella
