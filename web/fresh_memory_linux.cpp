#include "web/fresh_memory.h"

#include <memory>
#include <sys/mman.h>

namespace corvella {
namespace {

constexpr std::size_t boundary = std::size_t{64} << 10; // a multiple of every page size

} // namespace

bool populate_memory(char *start, std::size_t count)
{
    void *aligned = start;
    if (std::align(boundary, boundary, aligned, count) == nullptr) {
        return true; // no whole page inside
    }
    return madvise(aligned, count - count % boundary, MADV_POPULATE_WRITE) == 0;
}

} // namespace corvella
