#include "support/options/diagnostics.h"

#include <cstdio>

#include "support/options.h"

namespace corvella {

void complain_ambiguous(const char *program, const char *element, const char *first,
                        const char *second)
{
    if (option_errors != 0) {
        std::fprintf(stderr, "%s: option `%s' is ambiguous (could be `--%s' or `--%s')\n", program,
                     element, first, second);
    }
}

void complain_invalid(const char *program, char character)
{
    if (option_errors != 0) {
        std::fprintf(stderr, "%s: invalid option -- `-%c'\n", program, character);
    }
}

void complain_missing_argument(const char *program, char character)
{
    if (option_errors != 0) {
        std::fprintf(stderr, "%s: argument required for option `-%c'\n", program, character);
    }
}

void complain_missing_argument(const char *program, const char *name)
{
    if (option_errors != 0) {
        std::fprintf(stderr, "%s: argument required for option `--%s'\n", program, name);
    }
}

} // namespace corvella
