#include "support/c-utils/calendar_formulas.h"

namespace corvella {

std::int32_t formula_day_number(std::int32_t year, std::int32_t month, std::int32_t day)
{
    const std::int64_t a = (std::int64_t{14} - month) / 12;
    const std::int64_t y = year - a;
    return wrapped(1461 * (y + 4800) / 4 + 367 * (month + 12 * a - 2) / 12 -
                   3 * ((y + 4900) / 100) / 4 + day - 32075);
}

void formula_date(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                  std::int32_t *day)
{
    std::int64_t l = std::int64_t{day_number} + 68569;
    const std::int64_t k = 4 * l / 146097;
    l -= (146097 * k + 3) / 4;
    const std::int64_t i = 4000 * (l + 1) / 1461001;
    l = l - 1461 * i / 4 + 31;
    const std::int64_t j = 80 * l / 2447;
    const std::int64_t day_of_month = l - 2447 * j / 80;
    l = j / 11;
    *year = wrapped(100 * (k - 49) + i + l);
    *month = wrapped(j + 2 - 12 * l);
    *day = wrapped(day_of_month);
}

} // namespace corvella
