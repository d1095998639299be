/// \file
/// Erasing secrets. Internal to the layer.
#pragma once

#include <cstddef>

namespace corvella {

/// Overwrites \p size bytes with NUL. No compiler removes it, though nothing reads them afterwards.
inline void wipe(char *text, std::size_t size)
{
    for (volatile char *c = text; c != text + size; ++c) {
        *c = '\0';
    }
}

} // namespace corvella
