// Systems other than Mac OS X have no version of it.
#include "support/c-utils/copy.h"
#include "support/c-utils/system.h"

char *get_os_version(char *buffer, std::size_t size)
{
    return copy_string_bounded(buffer, "unknown", size);
}
