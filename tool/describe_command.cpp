#include <cstdint>
#include <string>

#include "support/c-utils.h"
#include "tool/commands.h"
#include "tool/output.h"

namespace {

void say_fact(const char *name, const std::string &fact)
{
    say_named("describe", name, fact);
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
        complain_of_usage("describe takes no arguments.");
        return EXIT_USAGE;
    }
    char text[256];
    get_os_name(text);
    say_fact("Operating system", text);
    say_fact("Version", get_os_version(text, sizeof text));
    get_host_name(text, sizeof text);
    say_fact("Host name", text);
    say_fact("Command line", own_command_line());
    const std::int32_t today = today_day_number();
    say_fact("Date", format_date_long(today, text));
    say_fact("Short date", format_date_compact(today, text));
    format_string_bounded(text, sizeof text, "%.6f", current_time_seconds());
    say_fact("Seconds since 1997", text);
    return EXIT_DONE;
}
