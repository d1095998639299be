#include "web/reply_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t least_capacity = 512;

/// Resizes the block. \return whether it worked; if not, the block is what it was.
bool resize(reply_text &text, std::size_t capacity)
{
    char *const block = static_cast<char *>(std::realloc(text.data.get(), capacity));
    if (block == nullptr) {
        return false;
    }
    (void)text.data.release(); // realloc has given the old block back
    text.data.reset(block);
    text.capacity = capacity;
    return true;
}

} // namespace

reply_text make_reply_text()
{
    return {{nullptr, std::free}, 0, 0};
}

char *room_in_reply_text(reply_text &text, std::size_t count)
{
    if (count > SIZE_MAX - 1 - text.length) {
        throw std::bad_alloc();
    }
    const std::size_t needed = text.length + count + 1;
    if (needed > text.capacity) {
        const std::size_t half = text.capacity / 2;
        const std::size_t grown = half > SIZE_MAX - text.capacity ? needed : text.capacity + half;
        if (!resize(text, std::max({needed, grown, least_capacity}))) {
            throw std::bad_alloc();
        }
    }
    return text.data.get() + text.length;
}

char *take_reply_text(reply_text &text)
{
    *room_in_reply_text(text, 0) = '\0';
    resize(text, text.length + 1); // a block that cannot shrink serves as it is
    text.length = 0;
    text.capacity = 0;
    return text.data.release();
}
