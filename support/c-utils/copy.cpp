#include "support/c-utils/copy.h"

#include <cstdio>
#include <cstring>

unsigned char *copy_counted_string(unsigned char *destination, const unsigned char *source)
{
    std::memmove(destination, source, source[0] + std::size_t{1});
    return destination;
}

char *copy_string_bounded(char *destination, const char *source, std::size_t size)
{
    if (size == 0 || destination == nullptr) {
        return destination;
    }
    std::strncpy(destination, source != nullptr ? source : "", size);
    destination[size - 1] = '\0';
    return destination;
}

void insert_string_into_string(const char *text, char *target, int location)
{
    const std::size_t target_length = std::strlen(target);
    if (location < 0 || static_cast<std::size_t>(location) > target_length) {
        std::printf("insert_string_into_string: bad location %d, into_string length %d \n",
                    location, static_cast<int>(target_length));
        return;
    }
    const std::size_t text_length = std::strlen(text);
    char *const gap = target + location;
    const std::size_t tail_size = target_length - static_cast<std::size_t>(location) + 1;
    std::memmove(gap + text_length, gap, tail_size);
    std::memcpy(gap, text, text_length);
    // Deliberate: the trace is part of every insertion.
    std::printf("insert_string_into_string: %s \n", target);
}
