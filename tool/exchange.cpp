#include "tool/exchange.h"

#include "support/c-utils.h"
#include "tool/output.h"
#include "tool/password.h"
#include "tool/stop_signals.h"
#include "tool/timing.h"

namespace corvella {

namespace {

const char *null_if_empty(const char *text)
{
    return text[0] != '\0' ? text : nullptr;
}

} // namespace

proxy_arguments proxy_arguments_of(const ProxySettings &settings)
{
    return {null_if_empty(settings.proxy_host), static_cast<std::uint16_t>(settings.proxy_port),
            null_if_empty(settings.user), null_if_empty(settings.password)};
}

namespace {

std::size_t body_bytes = 0;

void handle_step(WebStep step, void *)
{
    note_step(step);
    if (step == WEB_CONNECTED) {
        expect_stop_at_flag();
        show_connected();
    }
}

void handle_body(std::size_t received, void *)
{
    body_bytes = received;
    show_received(received);
    if (stop_requested()) {
        throw exchange_stopped();
    }
}

exit_status status_of(int result)
{
    switch (result) {
    case WEB_DONE:
        return EXIT_DONE;
    case WEB_TIMED_OUT:
        return EXIT_TIMED_OUT;
    case WEB_CANCELLED:
        return EXIT_CANCELLED;
    default:
        return EXIT_FAILED;
    }
}

/// An interrupt that the transaction did not see, because it failed the connecting or the reply
/// came complete all the same, counts as a cancellation.
int result_for_user(int result, stop_cause cause)
{
    if (cause == stop_cause::interrupt) {
        set_web_error("User canceled web transaction");
        return WEB_CANCELLED;
    }
    if (cause == stop_cause::time_limit && result == WEB_CANCELLED) {
        set_web_error("%s", time_limit_text());
        return WEB_TIMED_OUT;
    }
    return result;
}

} // namespace

void begin_exchange(const command_line &line, const progress_facts &facts)
{
    body_bytes = 0;
    start_timer();
    begin_timing();
    begin_stop_signals({line.max_time, line.max_time_text}, line.automated);
    set_web_step_callback(handle_step, nullptr);
    set_web_progress_callback(handle_body, nullptr);
    if (!line.quiet && !line.automated) {
        begin_progress_line(facts);
    }
}

int end_exchange(int result, command_line &line)
{
    const stop_cause cause = end_stop_signals();
    set_web_step_callback(nullptr, nullptr);
    set_web_progress_callback(nullptr, nullptr);
    end_timing();
    end_progress_line();
    wipe(line.proxy.password, sizeof line.proxy.password);
    return result_for_user(result, cause);
}

std::size_t received_body_bytes()
{
    return body_bytes;
}

exit_status report_exchange(int result)
{
    if (result != WEB_DONE) {
        // Only the update query fails without a reason of the web client's.
        const char *const reason = web_last_error();
        report_error(reason[0] != '\0' ? reason : "The reply has no message.");
    }
    return status_of(result);
}

} // namespace corvella
