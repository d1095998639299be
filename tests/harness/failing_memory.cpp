// The part of failing_calls.h that gives memory.
#include <algorithm>
#include <new>

#include "tests/harness/failing_calls_inside.h"

extern "C" {

void *__real_malloc(std::size_t size);
void *__wrap_malloc(std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __real_free(void *block);
void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size)
{
    return fails(Call::Malloc) ? nullptr : hold(__real_malloc(size), size);
}

void *__wrap_realloc(void *block, std::size_t size)
{
    const std::size_t old_size = let_go(block);
    const bool shrinks = old_size != not_held && size <= old_size;
    void *const moved = fails(Call::Realloc, shrinks) ? nullptr : __real_realloc(block, size);
    if (moved != nullptr) {
        return hold(moved, size);
    }
    if (old_size != not_held) {
        hold(block, old_size);
    }
    return nullptr;
}

void __wrap_free(void *block)
{
    let_go(block);
    __real_free(block);
}

} // extern "C"

// All forms, because a sanitizer brings its own of those that are not replaced. Not every compiler
// declares the ones with a size by itself.
void operator delete(void *block, std::size_t size) noexcept;
void operator delete[](void *block, std::size_t size) noexcept;
void *operator new(std::size_t size)
{
    void *const block = fails(Call::New) ? nullptr : __real_malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return hold(block, size);
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return fails(Call::New) ? nullptr : hold(__real_malloc(std::max<std::size_t>(size, 1)), size);
}

void *operator new[](std::size_t size)
{
    return operator new(size);
}

void *operator new[](std::size_t size, const std::nothrow_t &none) noexcept
{
    return operator new(size, none);
}

void operator delete(void *block) noexcept
{
    __wrap_free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    __wrap_free(block);
}

void operator delete(void *block, const std::nothrow_t &) noexcept
{
    __wrap_free(block);
}

void operator delete[](void *block) noexcept
{
    __wrap_free(block);
}

void operator delete[](void *block, std::size_t) noexcept
{
    __wrap_free(block);
}

void operator delete[](void *block, const std::nothrow_t &) noexcept
{
    __wrap_free(block);
}
