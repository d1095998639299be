#include "web/reply_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "web/fresh_memory.h"

namespace corvella {
namespace {

constexpr std::size_t least_capacity = 512;
constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr std::size_t least_populated_length = 4 * mebibyte;
constexpr std::size_t most_populated_ahead = 2 * mebibyte;
constexpr std::size_t greatest_capacity = PTRDIFF_MAX; // what differences of pointers can hold

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

/// Populates the memory ahead of a long text, at most a 32nd of its length, so that its peak memory
/// stays near its length. A system that refuses is not tried again for this text.
void populate_ahead(reply_text &text)
{
    if (text.length < text.populated || text.length < least_populated_length) {
        return;
    }
    const std::size_t ahead =
        std::min({text.length / 32, most_populated_ahead, text.capacity - text.length});
    const bool populated = populate_memory(text.data.get() + text.length, ahead);
    text.populated = populated ? text.length + ahead : SIZE_MAX;
}

} // namespace

reply_text make_reply_text()
{
    return {{nullptr, std::free}, 0, 0};
}

char *reserve_reply_text(reply_text &text, std::size_t count)
{
    if (count > greatest_capacity - 1 - text.length) {
        throw std::bad_alloc();
    }
    const std::size_t needed = text.length + count + 1;
    if (needed > text.capacity) {
        const std::size_t grown = std::min(text.capacity + text.capacity / 2, greatest_capacity);
        if (!resize(text, std::max({needed, grown, least_capacity}))) {
            throw std::bad_alloc();
        }
    }
    populate_ahead(text);
    return text.data.get() + text.length;
}

char *release_reply_text(reply_text &text)
{
    *reserve_reply_text(text, 0) = '\0';
    resize(text, text.length + 1); // a block that cannot shrink serves as it is
    text.length = 0;
    text.capacity = 0;
    text.populated = 0;
    return text.data.release();
}

} // namespace corvella
