#include "support/c-utils/string_buffer.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>

#include "support/error/allocation.h"

namespace {

// The private area into which an append is formatted. A longer text goes straight to the buffer.
constexpr int area_size = 4095;

// Room that a growing buffer keeps for what comes next.
constexpr std::int64_t growth = 128;

/// Makes room for \p added more bytes and a NUL.
void make_room(string_buffer &buffer, std::int64_t added)
{
    const std::int64_t length = buffer.length;
    if (added <= buffer.capacity - length - 2) {
        return;
    }
    const std::int64_t capacity = added + length + growth;
    if (capacity > INT32_MAX) {
        throw std::bad_alloc();
    }
    buffer.data = static_cast<char *>(checked_realloc(buffer.data, static_cast<std::size_t>(length),
                                                      static_cast<std::size_t>(capacity)));
    buffer.capacity = static_cast<std::int32_t>(capacity);
}

/// What the formatter's result means for the buffer: the number of bytes to append.
int appended_length(int formatted)
{
    if (formatted >= 0) {
        return formatted;
    }
    if (errno == EOVERFLOW) {
        throw std::bad_alloc(); // more than an int can count, and so more than the record can hold
    }
    return area_size; // deliberate: an error counts as a full area
}

} // namespace

std::uint32_t string_buffer_append_format(string_buffer *buffer, const char *format, ...)
{
    char area[area_size];
    area[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    int formatted = std::vsnprintf(area, sizeof area, format, arguments);
    va_end(arguments);

    int length = appended_length(formatted);
    make_room(*buffer, length);
    char *const end = buffer->data + buffer->length;
    if (formatted >= area_size) {
        va_start(arguments, format);
        formatted = std::vsnprintf(end, static_cast<std::size_t>(length) + 1, format, arguments);
        va_end(arguments);
        length = formatted < 0 ? area_size : formatted;
    }
    if (formatted < 0) {
        area[area_size - 1] = '\0';
        std::strncpy(end, area, area_size); // fills the rest with NUL
        end[length] = '\0';
    } else if (formatted < area_size) {
        std::memcpy(end, area, static_cast<std::size_t>(length) + 1);
    }
    buffer->length += static_cast<std::uint32_t>(length);
    return buffer->length;
}

char *string_buffer_data(string_buffer *buffer)
{
    return buffer->data;
}

void string_buffer_free(string_buffer *buffer)
{
    checked_free(buffer->data);
    *buffer = {};
}
