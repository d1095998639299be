#include "support/c-utils/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

int min_int(int a, int b)
{
    return std::min(a, b);
}

int max_int(int a, int b)
{
    return std::max(a, b);
}

int clamp_int(int x, int low, int high)
{
    return x < low ? low : std::min(x, high);
}

int abs_int(int x)
{
    return x < 0 ? static_cast<int>(0u - static_cast<unsigned>(x)) : x;
}

float min_float(float a, float b)
{
    return b < a || std::isnan(a) ? b : a;
}

float max_float(float a, float b)
{
    return b > a || std::isnan(a) ? b : a;
}

float clamp_float(float x, float low, float high)
{
    return x >= low ? min_float(x, high) : low; // a NaN is not above anything
}

float abs_float(float x)
{
    return std::fabs(x);
}

float lerp_float(float a, float b, float t)
{
    return a + (b - a) * t;
}

float remap_float(float x, float a, float b, float c, float d)
{
    const float range = b - a;
    return range == 0.0f ? c : c + (x - a) / range * (d - c);
}

float remap_clamped_float(float x, float a, float b, float c, float d)
{
    if (a == b) {
        return min_float(c, d);
    }
    float result = remap_float(x, a, b, c, d);
    if (result < c) {
        result = c;
    }
    if (result > d) {
        result = d;
    }
    return result;
}

float distance_2d(float x1, float y1, float x2, float y2)
{
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

float modulo_float(float x, float y)
{
    const float quotient = x / y;
    return y * (quotient - std::floor(quotient));
}

float fraction_float(float x)
{
    return x - std::floor(x);
}

float floor_to_step(float x, float y)
{
    return y * std::floor(x / y);
}

float round_to_step(float x, float y)
{
    const double step = static_cast<double>(y);
    const double quotient = (static_cast<double>(x) + step * 0.5) / step;
    return y * std::floor(static_cast<float>(quotient));
}

float hash_noise_float(float x)
{
    const float scaled = x * 8589934592.0f; // 2^33
    std::uint32_t bits;
    static_assert(sizeof bits == sizeof scaled, "a float is 32 bits wide");
    std::memcpy(&bits, &scaled, sizeof bits);
    const std::int32_t noise = static_cast<std::int32_t>(bits & 0x1fffffffu) - 0x10000000;
    return static_cast<float>(noise) * 1.1920928955078125e-07f; // 2^-23
}
