#include "web/fresh_memory.h"

namespace corvella {

bool populate_memory(char *, std::size_t)
{
    return false;
}

} // namespace corvella
