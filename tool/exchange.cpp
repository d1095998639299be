#include "tool/exchange.h"

#include <csignal>

#include "support/c-utils.h"
#include "tool/output.h"
#include "tool/password.h"
#include "tool/waiting_line.h"

namespace {

/// How the program takes SIGINT outside an exchange.
struct sigaction usual_action = {};

void request_cancel(int)
{
    web_cancel_requested = 1;
}

void catch_interrupt()
{
    sigaction(SIGINT, nullptr, &usual_action);
    if (usual_action.sa_handler == SIG_IGN) {
        return; // whoever started the program wants it so
    }
    struct sigaction action = {};
    action.sa_handler = request_cancel;
    // The second one finds the default again. No restart: a wait is to notice the first.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
}

const char *null_if_empty(const char *text)
{
    return text[0] != '\0' ? text : nullptr;
}

exit_status status_of(int result)
{
    switch (result) {
    case 0:
        return EXIT_DONE;
    case 1:
        return EXIT_TIMED_OUT;
    case 2:
        return EXIT_CANCELLED;
    default:
        return EXIT_FAILED;
    }
}

/// A request to stop that the transaction did not get to see, because the connection attempt failed
/// by it or the body kept coming, counts as a cancellation and is taken back.
int as_seen_by_the_user(int result)
{
    constexpr int cancelled = 2;
    if (web_cancel_requested == 0) {
        return result;
    }
    web_cancel_requested = 0;
    set_web_error("User canceled web transaction");
    return cancelled;
}

} // namespace

proxy_arguments proxy_arguments_of(const ProxySettings &settings)
{
    return {null_if_empty(settings.proxy_host), static_cast<std::uint16_t>(settings.proxy_port),
            null_if_empty(settings.user), null_if_empty(settings.password)};
}

void begin_exchange(const command_line &line)
{
    catch_interrupt();
    start_timer();
    if (!line.quiet && !line.automated) {
        begin_waiting_line();
    }
}

exit_status end_exchange(int result, command_line &line)
{
    wipe(line.proxy.password, sizeof line.proxy.password);
    end_waiting_line();
    sigaction(SIGINT, &usual_action, nullptr);
    result = as_seen_by_the_user(result);
    if (result != 0) {
        // Only the update query fails without a reason of the web client's.
        const char *const reason = web_last_error();
        report_error(reason[0] != '\0' ? reason : "The reply has no message.");
    }
    return status_of(result);
}
