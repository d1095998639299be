#include "support/c-utils.h"
#include "support/error.h"
#include "support/options.h"

int main(int count, char **vector)
{
    set_print_stream(stdout);
    while (get_options(count, vector, "v") == 'v') {
        print_indented("verbose\n");
    }
    std::int32_t year, month, day;
    date_from_day_number(2451545, &year, &month, &day);
    return print_indented("%d-%s-%d\n", day, month_names[month], year);
}
