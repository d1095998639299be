#include "support/error/print.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t print_size = 65536;

std::FILE *print_stream = nullptr;
int print_indent = 0;

/// Output in the making, cut at its end.
struct print_output {
    std::size_t length;
    char bytes[print_size];
};

void append_bytes(print_output &output, const char *bytes, std::size_t count)
{
    count = std::min(count, print_size - output.length);
    std::memcpy(output.bytes + output.length, bytes, count);
    output.length += count;
}

void append_dots(print_output &output, std::size_t count)
{
    count = std::min(count, print_size - output.length);
    std::memset(output.bytes + output.length, '.', count);
    output.length += count;
}

/// A newline at the very end starts no line, so it gets no dots behind it.
void append_indented(print_output &output, const char *text, std::size_t indent)
{
    do {
        append_dots(output, indent);
        const char *const newline = std::strchr(text, '\n');
        const std::size_t count =
            newline != nullptr ? static_cast<std::size_t>(newline - text) + 1 : std::strlen(text);
        append_bytes(output, text, count);
        text += count;
    } while (*text != '\0');
}

} // namespace

int print_indented(const char *format, ...)
{
    const std::size_t indent = static_cast<std::size_t>(print_indent);
    char text[print_size];
    text[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, indent < print_size ? print_size - indent : 1, format, arguments);
    va_end(arguments);

    print_output output;
    output.length = 0;
    append_indented(output, text, indent);
    if (print_stream == nullptr) {
        print_stream = stderr;
    }
    std::fwrite(output.bytes, 1, output.length, print_stream);
    return std::fflush(print_stream);
}

void set_print_stream(std::FILE *stream)
{
    print_stream = stream != nullptr ? stream : stderr;
}

std::FILE *get_print_stream()
{
    return print_stream;
}

void set_print_indent(int n)
{
    print_indent = std::max(n, 0);
}
