#include "support/c-utils/format.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "support/error/allocation.h"

char *format_string_alloc(const char *format, std::va_list arguments)
{
    // Most texts are short: the pass that measures them leaves them ready to be copied.
    char area[256];
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(area, sizeof area, format, measured);
    va_end(measured);
    if (length < 0 && errno == EOVERFLOW) {
        throw std::bad_alloc(); // longer than an int can count
    }
    const std::size_t size = length < 0 ? 1 : static_cast<std::size_t>(length) + 1;
    char *const text = static_cast<char *>(checked_malloc(size));
    if (length >= 0 && size <= sizeof area) {
        std::memcpy(text, area, size);
    } else if (length < 0 || std::vsnprintf(text, size, format, arguments) < 0) {
        text[0] = '\0'; // the second pass may be refused memory that the first one got
    }
    return text;
}

char *format_string_new(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    char *const text = format_string_alloc(format, arguments);
    va_end(arguments);
    return text;
}

int format_string_bounded(char *destination, std::size_t size, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(destination, size, format, arguments);
    va_end(arguments);
    if (size > 0) {
        if (length < 0) {
            destination[0] = '\0'; // whatever was formatted before the error
        }
        destination[size - 1] = '\0';
    }
    return length;
}
