/// \file
/// A second, plain account of the escaping in forms.
#pragma once

#include <cctype>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

/// What an area holds behind the escaping of \p source into it: at the count \p stop the text ends,
/// above \p refusal no escape is begun.
inline std::string escaped_area(std::string area, const std::string &source, long long stop,
                                long long refusal)
{
    std::string text;
    long long count = 0;
    bool refused = false;
    for (std::size_t i = 0; i < source.size() && count < stop && !refused; ++i) {
        const int byte = static_cast<unsigned char>(source[i]);
        if (byte < 128 && std::isalnum(byte) != 0) {
            text += source[i];
            count += 1;
        } else if (count > refusal) {
            refused = true;
        } else {
            char escape[4];
            std::snprintf(escape, sizeof escape, "%%%02x", static_cast<unsigned>(byte));
            text += escape;
            count += byte == ' ' ? 1 : 3;
        }
    }
    const std::size_t nul = text.size() + (refused ? 1 : 0);
    area.replace(0, text.size(), text);
    area.at(nul) = '\0';
    return area;
}

/// The body of a form of names and values. One area serves for all of them, so that an earlier text
/// leaves the stray byte of a refused escape.
inline std::string plain_form_body(const std::vector<std::pair<std::string, std::string>> &fields)
{
    std::string area(3 * 1021 + 3, '\0');
    std::string body;
    for (const auto &[name, value] : fields) {
        body += body.empty() ? "" : "&";
        area = escaped_area(area, name, 1023, 1020);
        body += area.c_str();
        area = escaped_area(area, value, 1023, 1020);
        body += "=";
        body += area.c_str();
    }
    return body;
}
