#include "support/options/operands.h"

namespace corvella {

std::int32_t operand_run(char *const *elements, std::int32_t count, bool long_only)
{
    std::int32_t run = 0;
    while (run < count && elements[run] != nullptr && is_operand(elements[run], long_only)) {
        ++run;
    }
    return run;
}

void move_in_front(char **element, int used_elements, std::int32_t skipped)
{
    char *const option = element[0];
    char *const argument = element[used_elements - 1];
    for (char **place = element - 1; place >= element - skipped; --place) {
        place[used_elements] = place[0];
    }
    element[used_elements - 1 - skipped] = argument;
    element[-skipped] = option;
}

} // namespace corvella
