#include "web/reply_header.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "support/c-utils/characters.h"
#include "web/result.h"
#include "web/web_error.h"

namespace {

char ascii_lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equal_names(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return ascii_lower(x) == ascii_lower(y);
           });
}

std::string_view trimmed(std::string_view value)
{
    constexpr char blanks[] = " \t";
    const std::size_t first = value.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return value.substr(0, 0);
    }
    return value.substr(first, value.find_last_not_of(blanks) - first + 1);
}

/// Removes the first line from \p text. \return the line without its line end.
std::string_view next_line(std::string_view &text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line.substr(0, line.find_last_not_of('\r') + 1);
}

/// \return the value of the first header line of that name; null data if there is none.
std::string_view find_value(const char *header, std::string_view name)
{
    std::string_view rest = header != nullptr ? header : "";
    next_line(rest); // the status line
    while (!rest.empty()) {
        const std::string_view line = next_line(rest);
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos && equal_names(line.substr(0, colon), name)) {
            return trimmed(line.substr(colon + 1));
        }
    }
    return {};
}

/// \return the number, saturated to 63 bits; -1 if \p text is not made of digits only.
std::int64_t digits_only(std::string_view text)
{
    std::int64_t number = text.empty() ? -1 : 0;
    for (const char c : text) {
        if (!corvella::is_digit(c)) {
            return -1;
        }
        const std::int64_t digit = c - '0';
        number = number > (INT64_MAX - digit) / 10 ? INT64_MAX : number * 10 + digit;
    }
    return number;
}

} // namespace

const char *find_reply_header(const char *header, const char *name, char *buffer, int size)
{
    const std::string_view value = find_value(header, name);
    if (value.data() == nullptr) {
        return nullptr;
    }
    if (size > 0) {
        const std::size_t kept = std::min(value.size(), static_cast<std::size_t>(size) - 1);
        std::memcpy(buffer, value.data(), kept);
        buffer[kept] = '\0';
    }
    return buffer;
}

int check_reply_complete(const char *header, const char *body)
{
    const std::int64_t announced = digits_only(find_value(header, "Content-Length"));
    const std::uint64_t received = body != nullptr ? std::strlen(body) : 0;
    if (announced < 0 || received >= static_cast<std::uint64_t>(announced)) {
        return WEB_DONE;
    }
    set_web_error("Incomplete reply from web site: %lld of %lld bytes",
                  static_cast<long long>(received), static_cast<long long>(announced));
    return WEB_FAILED;
}
