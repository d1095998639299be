// Collects messages instead of printing them twice.
#include <cstdio>
#include <string>

#include "support/error.h"

namespace {

std::string collected;

int collect(int level, const char *text)
{
    char line[256];
    format_message_line(level, text, line, sizeof line);
    collected += line;
    collected += '\n';
    return 0;
}

} // namespace

int main()
{
    // Every message also goes through the print path: point that at a place of its own.
    std::FILE *const log = std::tmpfile();
    if (log == nullptr) {
        return 1;
    }
    set_print_stream(log);
    const MessageHook earlier = set_message_hook(collect);
    report_message(2, "%d files read\n", 3);
    report_message(8, "%s is empty\n", "notes.txt");
    set_message_hook(earlier);
    set_print_stream(stdout);
    print_indented("%d messages:\n", static_cast<int>(message_count()));
    set_print_indent(2);
    print_indented("%s", collected.c_str());
    std::fclose(log);
    return 0;
}
