#include "support/c-utils/wrap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "support/c-utils/characters.h"

namespace {

// 64 bits, so that no width, indent or column overflows.
using position = std::int64_t;

constexpr position no_break = -1;

position last_space(const char *text, position from, position above)
{
    for (position i = from; i > above; --i) {
        if (corvella::is_space(text[i])) {
            return i;
        }
    }
    return no_break;
}

position first_space(const char *text, position from, position length)
{
    for (position i = from; i < length; ++i) {
        if (corvella::is_space(text[i])) {
            return i;
        }
    }
    return no_break;
}

/// Replaces the character at \p at and the white space behind it by a line feed and \p indent
/// spaces, and moves the rest. \return the new length of the text.
position break_line(char *text, position length, position at, position indent)
{
    position rest = at + 1;
    while (corvella::is_space(text[rest])) {
        ++rest;
    }
    char *const line = text + at + 1;
    const position rest_length = length - rest;
    std::memmove(line + indent, text + rest, static_cast<std::size_t>(rest_length) + 1);
    text[at] = '\n';
    std::memset(line, ' ', static_cast<std::size_t>(indent));
    return at + 1 + indent + rest_length;
}

} // namespace

void wrap_text_in_place(char *text, int width, int indent, int first_column)
{
    const position spaces = std::max(indent, 0);
    position length = static_cast<position>(std::strlen(text));
    position available = position{width} - first_column;
    bool begun = first_column > 0; // something stands before the text on its line
    position indented = 0;         // line feed and indentation at the start of the text

    while (length > 0 && length > available) {
        const position lowest = begun ? 0 : spaces;
        position at = lowest < available ? last_space(text, available, lowest) : no_break;
        if (at == no_break) {
            at = begun ? 0 : first_space(text, std::max(available, indented), length);
        }
        if (at == no_break) {
            return; // an overlong last word stays as it is
        }
        length = break_line(text, length, at, spaces) - at;
        text += at;
        available = width;
        begun = false;
        indented = 1 + spaces;
    }
}
