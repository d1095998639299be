/// \file
/// Floats compared bit for bit.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

inline std::uint32_t bits(float x)
{
    std::uint32_t pattern;
    std::memcpy(&pattern, &x, sizeof pattern);
    return pattern;
}

inline float from_bits(std::uint32_t pattern)
{
    float x;
    std::memcpy(&x, &pattern, sizeof x);
    return x;
}
