/// \file
/// Memory that is about to be written for the first time. Internal to the web client.
#pragma once

#include <cstddef>

namespace corvella {

/// Backs the pages inside \p count bytes at \p start with memory in one step, instead of one page
/// at each first write. Their contents do not change. \return false if the system cannot do it,
/// which is no reason to stop: the pages come one by one then.
bool populate_memory(char *start, std::size_t count);

} // namespace corvella
