#include "support/error/allocation.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

void *checked_malloc(std::size_t size)
{
    if (size == 0) {
        return nullptr;
    }
    void *const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void *checked_realloc(void *pointer, std::size_t, std::size_t new_size)
{
    // Some systems free the block and return null for size 0, which would read as exhaustion.
    void *const block = std::realloc(pointer, std::max<std::size_t>(new_size, 1));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

char *checked_strdup(const char *text, std::size_t extra)
{
    const std::size_t size = std::strlen(text) + 1;
    if (extra > SIZE_MAX - size) {
        throw std::bad_alloc();
    }
    char *const copy = static_cast<char *>(checked_malloc(size + extra));
    std::memcpy(copy, text, size);
    return copy;
}

void checked_free(void *pointer)
{
    std::free(pointer);
}
