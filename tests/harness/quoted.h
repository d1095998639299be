/// \file
/// Texts as they may be printed.
#pragma once

#include <cstdio>
#include <string>

/// \p text between quotation marks, with an escape for every byte that would not show.
inline std::string quoted(const std::string &text)
{
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        char escape[5];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
        const bool shows = byte >= 0x20 && byte < 0x7f && c != '"' && c != '\\';
        result += shows ? std::string(1, c) : escape;
    }
    return result + '"';
}
