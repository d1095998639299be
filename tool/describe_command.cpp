#include <cstdint>
#include <string>

#include "support/c-utils.h"
#include "tool/commands.h"
#include "tool/output.h"

namespace corvella {

namespace {

void print_fact(const char *name, const std::string &fact)
{
    print_named_result("describe", name, fact);
}

/// The command line with blanks between its arguments.
std::string own_command_line()
{
    char buffer[4096] = {};
    if (get_process_command_line(buffer, sizeof buffer, 0) == nullptr) {
        return "unknown";
    }
    std::string text(buffer, sizeof buffer);
    text.erase(text.find_last_not_of('\0') + 1);
    for (char &c : text) {
        if (c == '\0') {
            c = ' ';
        }
    }
    return text;
}

} // namespace

exit_status describe_command(command_line &line)
{
    if (!line.operands.empty()) {
        report_usage_error("describe takes no arguments.");
        return EXIT_USAGE;
    }
    char text[256];
    get_os_name(text);
    print_fact("Operating system", text);
    print_fact("Version", get_os_version(text, sizeof text));
    get_host_name(text, sizeof text);
    print_fact("Host name", text);
    print_fact("Command line", own_command_line());
    const std::int32_t today = today_day_number();
    print_fact("Date", format_date_long(today, text));
    print_fact("Short date", format_date_compact(today, text));
    format_string_bounded(text, sizeof text, "%.6f", current_time_seconds());
    print_fact("Seconds since 1997", text);
    return EXIT_DONE;
}

} // namespace corvella
