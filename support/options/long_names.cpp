#include "support/options/long_names.h"

#include <cstring>

namespace {

std::size_t length_up_to_equals(const char *text)
{
    const char *end = text;
    while (*end != '\0' && *end != '=') {
        ++end;
    }
    return static_cast<std::size_t>(end - text);
}

bool begins_with(const char *name, const char *text, std::size_t length)
{
    // The first byte mostly decides it.
    return length == 0 || (name[0] == text[0] && std::strncmp(name, text, length) == 0);
}

} // namespace

long_name_match match_long_name(const long_option *table, const char *text)
{
    long_name_match match = {nullptr, nullptr, length_up_to_equals(text)};
    for (const long_option *record = table; record->name != nullptr; ++record) {
        if (!begins_with(record->name, text, match.length)) {
            continue;
        }
        if (record->name[match.length] == '\0') {
            match.record = record;
            return match;
        }
        if (match.record != nullptr) {
            match.second = record;
            return match;
        }
        match.record = record;
    }
    return match;
}
