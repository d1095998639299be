/// \file
/// Allocation that throws instead of returning null. The blocks are ordinary blocks of the system
/// allocator: they belong to the caller, who gives them back with checked_free() or free().
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// \return a block of \p size bytes with undefined content; null for size 0, and only then.
/// \throws std::bad_alloc when memory is exhausted.
void *checked_malloc(std::size_t size);

/// Resizes \p pointer to \p new_size bytes, or allocates them when it is null. The content is kept
/// up to the smaller size; the block may move. \p old_size is not used. A \p new_size of 0 gives a
/// block of the least size, never null.
/// \return the block, which takes the place of \p pointer.
/// \throws std::bad_alloc when memory is exhausted; the old block is then valid and the caller's.
void *checked_realloc(void *pointer, std::size_t old_size, std::size_t new_size);

/// \return a new block that holds a copy of \p text with its NUL and \p extra more bytes, whose
/// content is undefined.
/// \throws std::bad_alloc when memory is exhausted or the size cannot be held in a std::size_t.
char *checked_strdup(const char *text, std::size_t extra);

/// Gives back a block of the functions above, or of the system allocator. Null does nothing.
void checked_free(void *pointer);

#pragma GCC visibility pop
