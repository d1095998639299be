#include "tool/password.h"

void wipe(char *text, std::size_t size)
{
    for (volatile char *c = text; c != text + size; ++c) {
        *c = '\0';
    }
}
