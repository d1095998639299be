#include "support/error/message_line.h"

#include <algorithm>
#include <cstddef>

#include "support/error/bounded_text.h"
#include "support/error/messages.h"

namespace corvella {

namespace {

enum class bell_place { none, before, after };

struct level_style {
    const char *label;
    bell_place bell;
};

// Levels 4 and 5 are the ringing variants of 2 and 3.
constexpr level_style level_styles[] = {
    {"Log", bell_place::none},          {"", bell_place::none},
    {"Info", bell_place::none},         {"Note", bell_place::none},
    {"Info", bell_place::after},        {"Note", bell_place::after},
    {"", bell_place::before},           {"Alert", bell_place::after},
    {"Warning", bell_place::after},     {"Error", bell_place::after},
    {"Fatal Error", bell_place::after},
};
constexpr int level_count = sizeof level_styles / sizeof level_styles[0];
constexpr int fallback_level = 8;

} // namespace

int known_message_level(int level)
{
    return level >= 0 && level < level_count ? level : fallback_level;
}

const char *message_label(int level)
{
    return level_styles[level].label;
}

int compose_message_line(int level, const char *text, int text_limit, char *buffer, int buffer_size)
{
    if (buffer_size < 1) {
        return 0;
    }
    const level_style &style = level_styles[known_message_level(level)];
    bounded_text line = {buffer, static_cast<std::size_t>(buffer_size) - 1, 0};
    if (style.bell == bell_place::before) {
        append_text(line, "\a");
    }
    append_text(line, style.label);
    append_text(line, style.label[0] != '\0' ? ": " : "");
    append_bytes(
        line, text,
        std::min(length_without_trailing(text, "\n"), static_cast<std::size_t>(text_limit)));
    if (style.bell == bell_place::after) {
        append_text(line, "\a");
    }
    end_text(line);
    return static_cast<int>(line.length);
}

} // namespace corvella

int format_message_line(int level, const char *text, char *buffer, int buffer_size)
{
    const int text_limit =
        buffer_size > corvella::LINE_OVERHEAD ? buffer_size - corvella::LINE_OVERHEAD : 0;
    return corvella::compose_message_line(level, text, text_limit, buffer, buffer_size);
}
