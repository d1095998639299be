/// All process-wide state of the web client.
#include "web/client_state.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/web_error.h"

volatile std::sig_atomic_t web_cancel_requested = 0;

namespace {

char *last_error_text = nullptr;
char system_error_buffer[1024] = "";

WebIdleCallback idle_callback = nullptr;
void *idle_argument = nullptr;

WebStepCallback step_callback = nullptr;
void *step_argument = nullptr;

WebProgressCallback progress_callback = nullptr;
void *progress_argument = nullptr;

WebProgressCallback send_callback = nullptr;
void *send_argument = nullptr;

} // namespace

void set_web_error(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    // Formatted before the old text is freed, which the arguments may quote.
    char *const text = format_string_alloc(format, arguments);
    va_end(arguments);
    checked_free(last_error_text);
    last_error_text = text;
}

const char *web_last_error()
{
    return last_error_text != nullptr ? last_error_text : "";
}

const char *system_error_text()
{
    const int code = errno;
    format_string_bounded(system_error_buffer, sizeof system_error_buffer, "code %d: %s", code,
                          std::strerror(code));
    return system_error_buffer;
}

void set_web_idle_callback(WebIdleCallback callback, void *argument)
{
    idle_callback = callback;
    idle_argument = argument;
}

void set_web_step_callback(WebStepCallback callback, void *argument)
{
    step_callback = callback;
    step_argument = argument;
}

void set_web_progress_callback(WebProgressCallback callback, void *argument)
{
    progress_callback = callback;
    progress_argument = argument;
}

void set_web_send_callback(WebProgressCallback callback, void *argument)
{
    send_callback = callback;
    send_argument = argument;
}

namespace corvella {

void clear_web_error()
{
    checked_free(last_error_text);
    last_error_text = nullptr;
}

void notify_idle()
{
    if (idle_callback != nullptr) {
        idle_callback(idle_argument);
    }
}

void notify_step(WebStep step)
{
    if (step_callback != nullptr) {
        step_callback(step, step_argument);
    }
}

void notify_received(std::size_t received)
{
    if (progress_callback != nullptr) {
        progress_callback(received, progress_argument);
    }
}

void notify_sent(std::size_t sent)
{
    if (send_callback != nullptr) {
        send_callback(sent, send_argument);
    }
}

} // namespace corvella
