/// \file
/// The two digits of a percent escape. Internal to the layer.
#pragma once

/// Writes "%" and the two digits of \p byte, taken from \p digits, to \p out.
/// \return the place behind them.
inline char *write_percent_escape(char *out, unsigned char byte, const char *digits)
{
    *out++ = '%';
    *out++ = digits[byte >> 4];
    *out++ = digits[byte & 0x0f];
    return out;
}

/// Whether \p byte is an ASCII letter or digit, in every locale.
constexpr bool is_ascii_alphanumeric(unsigned char byte)
{
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z');
}
