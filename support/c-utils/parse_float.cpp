#include "support/c-utils/parse_float.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "support/c-utils/characters.h"
#include "support/c-utils/decimal.h"

namespace {

/// Beyond this exponent every float but zero and infinity has become one of the two.
constexpr std::int32_t exponent_limit = 100;

float scaled_by_power_of_ten(float value, std::int32_t exponent)
{
    exponent = std::clamp(exponent, -exponent_limit, exponent_limit);
    return static_cast<float>(static_cast<double>(value) *
                              std::pow(10.0, static_cast<double>(exponent)));
}

/// The number being read, with single precision at each step.
struct float_reading {
    float value;
    float scale; ///< of the last digit behind the point
    bool fraction;
    bool any_digit;
};

void take_digit(float_reading &reading, char c)
{
    const float digit = static_cast<float>(c - '0');
    if (reading.fraction) {
        reading.scale *= 0.1f;
        reading.value += digit * reading.scale;
    } else {
        reading.value = reading.value * 10.0f + digit;
    }
    reading.any_digit = true;
}

float_reading read_unsigned(const char *text)
{
    float_reading reading = {0.0f, 1.0f, false, false};
    for (; *text != '\0'; ++text) {
        if (corvella::is_digit(*text)) {
            take_digit(reading, *text);
        } else if (*text == '.' && !reading.fraction) {
            reading.fraction = true;
        } else if (*text == 'e' || *text == 'E') {
            reading.value =
                scaled_by_power_of_ten(reading.value, corvella::decimal_or_zero(text + 1));
            break;
        } else {
            break;
        }
    }
    return reading;
}

} // namespace

int parse_float(const char *text, float *result)
{
    text = corvella::skip_white_space(text);
    const bool negative = *text == '-';
    if (negative || *text == '+') {
        ++text;
    }
    const float_reading reading = read_unsigned(text);
    if (!reading.any_digit) {
        return 0;
    }
    *result = negative ? -reading.value : reading.value;
    return 1;
}
