/// \file
/// Percent escaping by table. Internal to the layer.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "support/c-utils/characters.h"

namespace corvella {

/// What a byte becomes: itself, or "%" and two digits.
struct percent_code {
    char text[3];
    unsigned char length; ///< 1 or 3
};

using percent_table = std::array<percent_code, 256>;

/// Makes the table in which ASCII letters, digits and the characters of \p plain stay as they are,
/// and the others are written with \p digits.
constexpr percent_table make_percent_table(const char *plain, const char *digits)
{
    percent_table table = {};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const char c = static_cast<char>(byte);
        bool stays = is_ascii_alphanumeric(c);
        for (const char *other = plain; *other != '\0'; ++other) {
            stays = stays || *other == c;
        }
        table[byte] = {{stays ? c : '%', digits[byte >> 4], digits[byte & 0x0f]},
                       static_cast<unsigned char>(stays ? 1 : 3)};
    }
    return table;
}

/// Writes the code of \p byte, three bytes even where it is shorter. \return the place behind it.
inline char *write_percent_code(char *out, const percent_table &table, char byte)
{
    const percent_code &code = table[static_cast<unsigned char>(byte)];
    std::memcpy(out, code.text, sizeof code.text);
    return out + code.length;
}

/// Copies \p source with each byte's code and a NUL.
inline void copy_percent_coded(char *out, const char *source, const percent_table &table)
{
    // While two source bytes are left, two codes and the NUL still to come are three bytes at the
    // least, so that a whole code may be stored whatever its length.
    std::size_t left = std::strlen(source);
    for (; left >= 2; --left) {
        out = write_percent_code(out, table, *source++);
    }
    if (left == 1) {
        const percent_code &code = table[static_cast<unsigned char>(*source)];
        std::memcpy(out, code.text, code.length);
        out += code.length;
    }
    *out = '\0';
}

} // namespace corvella
