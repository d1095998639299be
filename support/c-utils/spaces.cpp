#include "support/c-utils/spaces.h"

#include <cstddef>

#include "support/c-utils/characters.h"

namespace {

/// Whether a space may stand behind the \p length characters kept so far.
bool takes_a_space(const char *kept, std::size_t length)
{
    if (length == 0) {
        return false; // so that the first character kept is never a space
    }
    return kept[length - 1] != ' ' || kept[length - 2] == '.';
}

} // namespace

char *collapse_spaces(const char *source, char *destination)
{
    char *out = destination;
    char previous = ' '; // so that a space at the very start goes too
    for (; *source != '\0'; ++source) {
        const char c = *source;
        if (c != ' ' || previous != ' ') {
            *out++ = c;
        }
        previous = c;
    }
    *out = '\0';
    return destination;
}

char *normalize_spaces_in_place(char *text)
{
    std::size_t length = 0;
    for (const char *in = text; *in != '\0'; ++in) {
        if (!corvella::is_space(*in)) {
            text[length++] = *in;
        } else if (takes_a_space(text, length)) {
            text[length++] = ' ';
        }
    }
    text[length] = '\0';
    return text;
}
