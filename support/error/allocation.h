/// \file
/// Allocation that throws instead of returning null. The caller owns each block and releases it
/// with checked_free() or free(): the blocks come from the system allocator.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Allocates a block of undefined content.
/// \param size in bytes
/// \return the block; null if \p size is 0, and only then.
/// \throws std::bad_alloc if memory is exhausted.
void *checked_malloc(std::size_t size);

/// Resizes a block, keeping its content up to the smaller size. The block may move.
/// \param pointer the block; null allocates a new one
/// \param old_size ignored
/// \param new_size in bytes; 0 gives a block of the least size, never null
/// \return the block, which replaces \p pointer.
/// \throws std::bad_alloc if memory is exhausted; \p pointer then stays valid and the caller's.
void *checked_realloc(void *pointer, std::size_t old_size, std::size_t new_size);

/// Copies a string into a new block with room to grow.
/// \param text the string
/// \param extra bytes allocated after the NUL; their content is undefined
/// \return the copy.
/// \throws std::bad_alloc if memory is exhausted or the size does not fit into a std::size_t.
char *checked_strdup(const char *text, std::size_t extra);

/// Releases a block of the functions above or of the system allocator.
/// \param pointer the block; null does nothing
void checked_free(void *pointer);

#pragma GCC visibility pop
