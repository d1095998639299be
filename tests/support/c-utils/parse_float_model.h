/// \file
/// A second, plain account of the reader of decimal numbers.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

/// The integer at the start of a text, saturated far outside every exponent that matters.
inline int plain_integer(const std::string &text)
{
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string::npos) {
        return 0;
    }
    const bool negative = text[start] == '-';
    const std::size_t digits = start + (negative || text[start] == '+' ? 1 : 0);
    int value = 0;
    for (std::size_t i = digits; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value > 100000 ? value : value * 10 + (text[i] - '0');
    }
    return negative ? -value : value;
}

/// A power of ten as the decimal reader of the library rounds it.
inline double power_of_ten(int exponent)
{
    return std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
}

/// The reader spelt out step by step; every volatile store rounds to single precision.
class PlainReader {
public:
    /// \return the bit pattern of the number, or nothing where there is none.
    std::optional<std::uint32_t> read(const std::string &text)
    {
        std::string rest =
            text.substr(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
        const bool negative = rest[0] == '-';
        if (negative || rest[0] == '+') {
            rest.erase(0, 1);
        }
        rest.resize(std::min(rest.size(), rest.find_first_not_of("0123456789.eE+- \t\n\v\f\r")));
        const std::string mantissa = rest.substr(0, rest.find_first_not_of("0123456789."));
        const std::size_t point = mantissa.find('.');
        const std::size_t second =
            point == std::string::npos ? point : mantissa.find('.', point + 1);
        const std::string whole = mantissa.substr(0, point);
        std::string fraction;
        if (point != std::string::npos) {
            fraction = mantissa.substr(point + 1, second - point - 1);
        }
        if (whole.empty() && fraction.empty()) {
            return {};
        }
        add_digits(whole, fraction);
        const std::string behind = rest.substr(mantissa.size());
        if (second == std::string::npos && (behind[0] == 'e' || behind[0] == 'E')) {
            volatile double product = static_cast<double>(value_);
            product = product * power_of_ten(plain_integer(behind.substr(1)));
            value_ = static_cast<float>(product);
        }
        const float value = value_;
        std::uint32_t pattern;
        std::memcpy(&pattern, &value, sizeof pattern);
        return pattern | (negative ? 0x80000000U : 0U);
    }

private:
    void add_digits(const std::string &whole, const std::string &fraction)
    {
        for (const char c : whole) {
            volatile float tenfold = value_ * 10.0F;
            value_ = tenfold + static_cast<float>(c - '0');
        }
        volatile float scale = 1.0F;
        for (const char c : fraction) {
            scale = scale * 0.1F;
            volatile float part = static_cast<float>(c - '0') * scale;
            value_ = value_ + part;
        }
    }

    volatile float value_ = 0.0F;
};

/// Whether a bit pattern is that of no number: zero times an infinite power of ten, or the reverse,
/// has no value to compare.
inline bool is_not_a_number(std::uint32_t pattern)
{
    return (pattern & 0x7fffffffU) > 0x7f800000U;
}
