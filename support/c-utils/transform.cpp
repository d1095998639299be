#include "support/c-utils/transform.h"

#include "support/c-utils/characters.h"

namespace {

bool is_identifier_character(char c)
{
    return corvella::is_alphanumeric(c) || c == '_';
}

/// Copies each character as \p change makes it.
template <typename Change> char *copy_changed(const char *source, char *destination, Change change)
{
    char *out = destination;
    for (; *source != '\0'; ++source) {
        *out++ = change(*source);
    }
    *out = '\0';
    return destination;
}

/// Copies the characters that \p keep accepts.
template <typename Keep> char *copy_kept(const char *source, char *destination, Keep keep)
{
    char *out = destination;
    for (; *source != '\0'; ++source) {
        if (keep(*source)) {
            *out++ = *source;
        }
    }
    *out = '\0';
    return destination;
}

} // namespace

void string_to_lower(const char *source, char *destination)
{
    copy_changed(source, destination, corvella::to_lower);
}

char *string_to_upper(const char *source, char *destination)
{
    return copy_changed(source, destination, corvella::to_upper);
}

char *remove_blanks_and_underscores(const char *source, char *destination)
{
    return copy_kept(source, destination, [](char c) { return c != ' ' && c != '_'; });
}

char *remove_periods(const char *source, char *destination)
{
    return copy_kept(source, destination, [](char c) { return c != '.'; });
}

char *remove_spaces(const char *source, char *destination)
{
    return copy_kept(source, destination, [](char c) { return c != ' '; });
}

char *keep_identifier_characters(const char *source, char *destination)
{
    return copy_kept(source, destination, is_identifier_character);
}

char *line_breaks_to_spaces(const char *source, char *destination)
{
    return copy_changed(source, destination,
                        [](char c) { return c == '\n' || c == '\r' ? ' ' : c; });
}

char *underscores_to_spaces(const char *source, char *destination)
{
    return copy_changed(source, destination, [](char c) { return c == '_' ? ' ' : c; });
}

char *spaces_to_underscores(const char *source, char *destination)
{
    return copy_changed(source, destination, [](char c) { return c == ' ' ? '_' : c; });
}

char *double_percent_signs(const char *source, char *destination)
{
    char *out = destination;
    for (; *source != '\0'; ++source) {
        if (*source == '%') {
            *out++ = '%';
        }
        *out++ = *source;
    }
    *out = '\0';
    return destination;
}

char *underscores_to_camel_case(const char *source, char *destination)
{
    char *out = destination;
    bool word_starts = true;
    for (; *source != '\0'; ++source) {
        if (*source == '_') {
            word_starts = true;
        } else {
            *out++ = word_starts ? corvella::to_upper(*source) : *source;
            word_starts = false;
        }
    }
    *out = '\0';
    return destination;
}
