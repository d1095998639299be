#include "tool/terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>

namespace corvella {

namespace {

constexpr long most_columns = 9999;
constexpr int usual_columns = 79;

/// \return 0 when the environment does not say it.
int columns_of_environment()
{
    const char *const text = std::getenv("COLUMNS");
    if (text == nullptr) {
        return 0;
    }
    char *end;
    const long columns = std::strtol(text, &end, 10);
    return *end == '\0' && columns >= 1 && columns <= most_columns ? static_cast<int>(columns) : 0;
}

} // namespace

int terminal_columns(int descriptor)
{
    if (const int columns = columns_of_environment()) {
        return columns;
    }
    winsize window = {};
    const bool known = ioctl(descriptor, TIOCGWINSZ, &window) == 0 && window.ws_col > 0;
    return known ? window.ws_col : usual_columns;
}

} // namespace corvella
