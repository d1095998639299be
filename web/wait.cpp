#include "web/wait.h"

#include <sys/select.h>

#include "support/c-utils.h"
#include "web/client_state.h"
#include "web/result.h"
#include "web/web_error.h"

namespace corvella {

static_assert(WAIT_DESCRIPTORS <= FD_SETSIZE, "a descriptor of the wait fits into the set");

namespace {

bool is_past(std::uint32_t deadline, std::uint32_t now)
{
    return static_cast<std::int32_t>(deadline) <= static_cast<std::int32_t>(now);
}

constexpr std::uint32_t silence_limit = SILENCE_LIMIT_SECONDS * 1000u;
constexpr std::uint32_t slice_ms = 100;

} // namespace

std::uint32_t silence_deadline()
{
    return current_time_milliseconds() + silence_limit;
}

bool deadline_passed(std::uint32_t deadline)
{
    return is_past(deadline, current_time_milliseconds());
}

wait_result wait_readable(int socket, timeval slice, request_progress *request)
{
    // One look at the clock serves the deadline and the first comparison: this is done for each
    // byte of a header.
    std::uint32_t now = current_time_milliseconds();
    std::uint32_t deadline = now + silence_limit;
    for (; !is_past(deadline, now); now = current_time_milliseconds()) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(socket, &readable);
        timeval limit = slice; // some systems count it down
        if (select(WAIT_DESCRIPTORS, &readable, nullptr, nullptr, &limit) > 0) {
            // A readiness that is not this socket's cannot be waited for any better.
            return FD_ISSET(socket, &readable) ? wait_result::ready : wait_result::timed_out;
        }
        if (web_cancel_requested != 0) {
            return wait_result::cancelled;
        }
        if (request != nullptr) {
            now = current_time_milliseconds();
            if (check_remaining_request(*request, now)) {
                deadline = now + silence_limit;
            }
        }
        notify_idle();
    }
    return wait_result::timed_out;
}

wait_result continue_sending(request_progress &request, bool accepted_some)
{
    if (web_cancel_requested != 0) {
        return wait_result::cancelled;
    }
    const std::uint32_t now = current_time_milliseconds();
    const bool is_first = !request.checked;
    if (accepted_some && !is_first && now - request.checked_at < slice_ms) {
        return wait_result::ready;
    }
    if (check_request_progress(request, now) || is_first) {
        request.deadline = now + silence_limit;
    } else if (!accepted_some && is_past(request.deadline, now)) {
        return wait_result::timed_out;
    }
    if (!accepted_some) {
        notify_idle();
    }
    return wait_result::ready;
}

int report_wait_failure(wait_result result)
{
    switch (result) {
    case wait_result::timed_out:
        set_web_error("Timeout waiting for web site");
        return WEB_TIMED_OUT;
    case wait_result::cancelled:
        web_cancel_requested = 0; // also where no memory is left for the text
        set_web_error("User canceled web transaction");
        return WEB_CANCELLED;
    case wait_result::ready:
        break;
    }
    return WEB_DONE;
}

} // namespace corvella
