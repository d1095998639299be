#include "support/error/print.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstring>

#include "support/error/bounded_text.h"
#include "support/error/internal.h"

namespace {

constexpr std::size_t print_size = 65536;

std::FILE *print_stream = nullptr;
int print_indent = 0;

/// How much of a text is printed: what the indent leaves of the buffer.
std::size_t text_limit()
{
    const std::size_t indent = static_cast<std::size_t>(print_indent);
    return indent < print_size ? print_size - 1 - indent : 0;
}

/// A newline at the very end starts no line, so it gets no dots behind it.
void append_indented(corvella::bounded_text &output, const char *text, std::size_t length)
{
    const char *const end = text + length;
    do {
        append_run(output, '.', static_cast<std::size_t>(print_indent));
        const void *const newline = std::memchr(text, '\n', static_cast<std::size_t>(end - text));
        const char *const line_end =
            newline != nullptr ? static_cast<const char *>(newline) + 1 : end;
        append_bytes(output, text, static_cast<std::size_t>(line_end - text));
        text = line_end;
    } while (text != end);
}

int write_and_flush(const char *bytes, std::size_t count)
{
    if (print_stream == nullptr) {
        print_stream = stderr;
    }
    std::fwrite(bytes, 1, count, print_stream);
    return std::fflush(print_stream);
}

} // namespace

int corvella::print_text(const char *text)
{
    const std::size_t length = std::min(std::strlen(text), text_limit());
    if (print_indent == 0) {
        return write_and_flush(text, length);
    }
    char buffer[print_size];
    corvella::bounded_text output = {buffer, sizeof buffer, 0};
    append_indented(output, text, length);
    return write_and_flush(output.bytes, output.length);
}

int print_indented(const char *format, ...)
{
    char text[print_size];
    text[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, text_limit() + 1, format, arguments);
    va_end(arguments);
    return corvella::print_text(text);
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
