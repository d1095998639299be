#include "support/options/long_names.h"

#include <cstddef>

namespace corvella {

namespace {

bool ends_name(char c)
{
    return c == '\0' || c == '=';
}

} // namespace

long_name_match match_long_name(const long_option *table, const char *text)
{
    long_name_match match = {nullptr, nullptr, 0};
    for (const long_option *record = table; record->name != nullptr; ++record) {
        std::size_t length = 0;
        while (record->name[length] == text[length] && !ends_name(text[length])) {
            ++length;
        }
        if (!ends_name(text[length])) {
            continue;
        }
        match.length = length;
        if (record->name[length] == '\0') {
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

} // namespace corvella
