#include <cstdio>

#include "support/version.h"

#if CORVELLA_VERSION_NUMBER < 0x010000
#error older than the first version
#endif

int main()
{
    std::printf("%s %d.%d.%d %#08x\n", CORVELLA_VERSION, CORVELLA_VERSION_MAJOR,
                CORVELLA_VERSION_MINOR, CORVELLA_VERSION_PATCH, CORVELLA_VERSION_NUMBER);
}
