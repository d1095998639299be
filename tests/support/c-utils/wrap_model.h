/// \file
/// A second, plain account of wrapping.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "tests/support/c-utils/text_models.h"

struct Layout {
    int width;
    int indent;
    int first_column;
};

struct Wrapped {
    std::string text;
    std::size_t breaks;
};

inline bool is_blank(char c)
{
    return white_space.find(c) != std::string::npos;
}

/// Where the rest of a text is broken; npos when it stays whole. \p fixed characters at its start
/// are a line feed and an indentation just written.
inline std::size_t break_in(const std::string &rest, long long available, long long indent,
                            bool column, std::size_t fixed)
{
    const long long lowest = column ? 0 : indent;
    for (long long i = available; lowest < available && i > lowest; --i) {
        if (is_blank(rest[static_cast<std::size_t>(i)])) {
            return static_cast<std::size_t>(i);
        }
    }
    if (column) {
        return rest.empty() ? std::string::npos : 0;
    }
    const auto from = static_cast<std::size_t>(std::max(available, 0LL));
    return rest.find_first_of(white_space, std::max(from, fixed));
}

/// The text line by line, each rest a new text.
inline Wrapped plainly_wrapped(const std::string &text, const Layout &layout)
{
    const long long indent = std::max(layout.indent, 0);
    long long column = layout.first_column;
    Wrapped result = {"", 0};
    std::string rest = text;
    std::size_t fixed = 0;
    for (;;) {
        const long long available = static_cast<long long>(layout.width) - column;
        if (static_cast<long long>(rest.size()) <= available) {
            break;
        }
        const std::size_t at = break_in(rest, available, indent, column > 0, fixed);
        if (at == std::string::npos) {
            break;
        }
        result.text += rest.substr(0, at);
        const std::size_t next = std::min(rest.find_first_not_of(white_space, at + 1), rest.size());
        rest = "\n" + std::string(static_cast<std::size_t>(indent), ' ') + rest.substr(next);
        fixed = static_cast<std::size_t>(indent) + 1;
        column = 0;
        ++result.breaks;
    }
    result.text += rest;
    return result;
}
