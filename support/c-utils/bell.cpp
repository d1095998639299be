#include "support/c-utils/bell.h"

#include <cstdio>

void ring_bell()
{
    std::fputc('\a', stderr);
}
