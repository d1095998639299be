#include "support/error/messages.h"

#include <cstdarg>
#include <cstdio>

#include "support/error/bounded_text.h"
#include "support/error/internal.h"
#include "support/error/message_line.h"
#include "support/error/recorder.h"

namespace {

constexpr std::size_t message_size = 1024;

std::uint32_t reported_messages = 0;

/// Deliberately the text keeps its own newline in this copy of the message, and the levels without
/// a label keep the colon.
void compose_printed_line(int level, const char *text, char (&buffer)[message_size])
{
    corvella::bounded_text line = {buffer, message_size - 1, 0};
    append_text(line, corvella::message_label(level));
    append_text(line, ": ");
    append_text(line, text);
    append_text(line, "\n");
    end_text(line);
}

} // namespace

int report_message(int level, const char *format, ...)
{
    level = corvella::known_message_level(level);

    char text[message_size];
    text[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);

    char line[message_size];
    compose_printed_line(level, text, line);
    corvella::print_text(line);
    int result = record_timestamped_line(line);
    // Deliberately the message is shown a second time: the hook forms its own line.
    if (level > 0) {
        result = corvella::call_message_hook(level, text);
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
    corvella::call_output_hook(text, tag);
}

std::int32_t message_count()
{
    return static_cast<std::int32_t>(reported_messages);
}
