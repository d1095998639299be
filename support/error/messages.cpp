#include "support/error/messages.h"

#include <cstdarg>
#include <cstdio>

#include "support/error/hooks_in_force.h"
#include "support/error/message_line.h"
#include "support/error/print.h"
#include "support/error/recorder.h"

namespace {

constexpr std::size_t message_size = 1024;

std::uint32_t reported_messages = 0;

} // namespace

int report_message(int level, const char *format, ...)
{
    level = known_message_level(level);

    char text[message_size];
    text[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);

    // Deliberately the text keeps its own newline in this copy, and the levels without a label
    // keep the colon.
    char line[message_size];
    if (std::snprintf(line, sizeof line, "%s: %s\n", message_label(level), text) < 0) {
        line[0] = '\0';
    }
    print_indented("%s", line);
    int result = record_timestamped_line(line);
    // Deliberately the message is shown a second time: the hook forms its own line.
    if (level > 0) {
        result = call_message_hook(level, text);
    }
    ++reported_messages;
    return result;
}

void write_raw_message(const char *text, const char *tag)
{
    if (text[0] == '\0') {
        return;
    }
    record_timestamped_line(text);
    call_output_hook(text, tag);
}

std::int32_t message_count()
{
    return static_cast<std::int32_t>(reported_messages);
}
