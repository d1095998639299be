#include "tool/printable.h"

#include <algorithm>
#include <cstddef>
#include <unistd.h>

namespace corvella {

namespace {

bool is_between(char c, unsigned first, unsigned last)
{
    const unsigned byte = static_cast<unsigned char>(c);
    return byte >= first && byte <= last;
}

/// The lead bytes of UTF-8 that allow the same second byte.
struct utf8_form {
    unsigned first_lead, last_lead;
    unsigned first_second, last_second;
    std::size_t length;
};

// Neither overlong nor a surrogate nor beyond U+10FFFF (table 3-7 of the Unicode standard).
constexpr utf8_form utf8_forms[] = {
    {0xc2, 0xdf, 0x80, 0xbf, 2}, {0xe0, 0xe0, 0xa0, 0xbf, 3}, {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3}, {0xee, 0xef, 0x80, 0xbf, 3}, {0xf0, 0xf0, 0x90, 0xbf, 4},
    {0xf1, 0xf3, 0x80, 0xbf, 4}, {0xf4, 0xf4, 0x80, 0x8f, 4},
};

bool begins_with(std::string_view text, const utf8_form &form)
{
    if (text.size() < form.length || !is_between(text[0], form.first_lead, form.last_lead) ||
        !is_between(text[1], form.first_second, form.last_second)) {
        return false;
    }
    for (std::size_t i = 2; i < form.length; ++i) {
        if (!is_between(text[i], 0x80, 0xbf)) {
            return false;
        }
    }
    return true;
}

/// \return the length of the character that \p text begins with: 1 for what is no UTF-8.
std::size_t first_length(std::string_view text)
{
    for (const utf8_form &form : utf8_forms) {
        if (begins_with(text, form)) {
            return form.length;
        }
    }
    return 1;
}

/// Whether the first character of \p text, \p length bytes long, would drive a terminal.
bool begins_with_control(std::string_view text, std::size_t length)
{
    if (length > 1) {
        return text[0] == '\xc2' && static_cast<unsigned char>(text[1]) <= 0x9f;
    }
    if (text[0] == '\t' || text[0] == '\n' || text.substr(0, 2) == "\r\n") {
        return false;
    }
    return is_between(text[0], 0, 0x1f) || is_between(text[0], 0x7f, 0x9f);
}

} // namespace

std::string printable_text(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = first_length(text);
        if (begins_with_control(text, length)) {
            result += '?';
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return result;
}

std::string sanitized_for(int descriptor, const std::string &text)
{
    return isatty(descriptor) != 0 ? printable_text(text) : text;
}

std::vector<std::string> lines_of(const std::string &text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; (at = text.find_first_not_of("\r\n", at)) != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end;
    }
    return lines;
}

} // namespace corvella
