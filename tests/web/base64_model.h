/// \file
/// A plain reader of base64.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

constexpr std::string_view base64_alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Reads base64 back, bit by bit. \return nothing where a letter is none of the alphabet, or where
/// the bits left over are not zero.
inline std::optional<std::string> decoded(std::string_view text)
{
    std::string bytes;
    unsigned collected = 0;
    int bits = 0;
    for (const char letter : text.substr(0, text.find('='))) {
        const std::size_t value = base64_alphabet.find(letter);
        if (value == std::string_view::npos) {
            return {};
        }
        for (int bit = 5; bit >= 0; --bit) {
            collected = collected * 2 + (static_cast<unsigned>(value) >> bit) % 2;
            if (++bits == 8) {
                bytes += static_cast<char>(collected);
                collected = 0;
                bits = 0;
            }
        }
    }
    return collected == 0 ? std::optional<std::string>(bytes) : std::nullopt;
}
