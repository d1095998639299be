#include "web/web_error.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/web_error_state.h"

namespace {

char *last_error_text = nullptr;

} // namespace

void set_web_error(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    // Formed before the old text goes, which the arguments may quote.
    char *const text = format_string_alloc(format, arguments);
    va_end(arguments);
    checked_free(last_error_text);
    last_error_text = text;
}

void clear_web_error()
{
    checked_free(last_error_text);
    last_error_text = nullptr;
}

const char *web_last_error()
{
    return last_error_text != nullptr ? last_error_text : "";
}

const char *system_error_text()
{
    static char text[1024];
    const int code = errno;
    format_string_bounded(text, sizeof text, "code %d: %s", code, std::strerror(code));
    return text;
}
