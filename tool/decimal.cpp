#include "tool/decimal.h"

namespace corvella {

bool parse_decimal(const char *text, double &number)
{
    double digits = 0;
    double scale = 1;
    bool has_digit = false;
    bool has_point = false;
    for (; *text != '\0'; ++text) {
        if (*text >= '0' && *text <= '9') {
            digits = digits * 10 + (*text - '0');
            scale = has_point ? scale * 10 : scale;
            has_digit = true;
        } else if (*text == '.' && !has_point) {
            has_point = true;
        } else {
            return false;
        }
    }
    number = digits / scale;
    return has_digit;
}

} // namespace corvella
