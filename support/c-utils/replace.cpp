#include "support/c-utils/replace.h"

#include <cstring>

char *replace_all_substrings(const char *pattern, const char *replacement, const char *source,
                             char *destination)
{
    const std::size_t pattern_length = std::strlen(pattern);
    const std::size_t replacement_length = std::strlen(replacement);
    const char *found = pattern_length > 0 ? std::strstr(source, pattern) : nullptr;
    while (found != nullptr) {
        const std::size_t kept = static_cast<std::size_t>(found - source);
        std::memmove(destination, source, kept);
        std::memmove(destination + kept, replacement, replacement_length);
        destination += kept + replacement_length;
        source = found + pattern_length;
        found = std::strstr(source, pattern);
    }
    std::memmove(destination, source, std::strlen(source) + 1);
    return destination; // deliberately where the rest stands, not where the text starts
}
