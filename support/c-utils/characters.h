/// \file
/// Questions about single characters. Internal to the layer.
///
/// The standard library's classes are asked about unsigned bytes, as they must be.
#pragma once

#include <cctype>

namespace corvella {

inline bool is_space(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

inline bool is_upper(char c)
{
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}

inline bool is_alphanumeric(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

inline char to_lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

inline char to_upper(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

/// Whether \p c is a decimal digit, in every locale.
constexpr bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether \p c is an ASCII letter or digit, in every locale.
constexpr bool is_ascii_alphanumeric(char c)
{
    return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// \return the place of the first character that is no white space.
inline const char *skip_white_space(const char *text)
{
    while (is_space(*text)) {
        ++text;
    }
    return text;
}

} // namespace corvella
