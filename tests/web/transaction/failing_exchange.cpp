#include "tests/web/transaction/failing_exchange.h"

#include <cerrno>
#include <cstdlib>
#include <netdb.h>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

RunningExchange running;

namespace {

/// A failed wait is one without news.
Exchange with_failed_select(const Failure &failure)
{
    if (!failure.for_ever()) {
        return {0, header, body};
    }
    return failure.number <= header_reads ? Exchange{1, {}, {}, timeout}
                                          : Exchange{1, header, {}, timeout};
}

std::optional<std::string> taken(char *&text)
{
    std::optional<std::string> copy;
    if (text != nullptr) {
        copy = text;
    }
    std::free(text);
    text = nullptr;
    return copy;
}

} // namespace

std::string shown(const Exchange &exchange)
{
    return std::to_string(exchange.result) + "|" + exchange.header.value_or("none") + "|" +
           exchange.body.value_or("none") + "|" + exchange.error +
           (exchange.request_is_whole ? "|whole" : "|cut");
}

bool was_interruption(int error)
{
    return error == EINTR || error == EAGAIN;
}

/// A send that was interrupted, or whose slice is over, is tried again. Whatever else is lost cuts
/// the request, of which the reply tells; here there is one.
Exchange with_failed_send(const Failure &failure)
{
    if (!was_interruption(failure.error)) {
        return {0, header, body, "", false};
    }
    return failure.for_ever() ? Exchange{1, {}, {}, timeout, false} : Exchange{0, header, body};
}

/// Within the header an interruption is tried again, and an error makes what follows the body;
/// within the body an interruption is its end.
Exchange with_failed_receive(const Failure &failure)
{
    const bool in_header = failure.number <= header_reads;
    const auto place = static_cast<std::size_t>(failure.number - 1);
    if (was_interruption(failure.error)) {
        if (in_header) {
            return failure.for_ever() ? Exchange{1, {}, {}, timeout} : Exchange{0, header, body};
        }
        const std::size_t received = place - header_bytes.size();
        return {0, header, received == 0 ? "" : received == 1 ? chunks[0] : body};
    }
    const std::string error = "Error receiving data from web site: " + code_text(failure.error);
    if (!in_header) {
        return {-1, header, {}, error};
    }
    if (failure.for_ever()) {
        return {-1, header_bytes.substr(0, place), {}, error};
    }
    return {0, header_bytes.substr(0, place), header_bytes.substr(place) + body, error};
}

Exchange exchange_with(const Failure &failure, const std::string &host)
{
    switch (failure.call) {
    case Call::Socket:
        return {-1, {}, {}, "Can't create web socket, " + code_text(failure.error), false};
    case Call::Lookup:
        return {
            -1, {}, {}, "Can't find web server '" + host + "': " + hstrerror(failure.error), false};
    case Call::Connect:
        return {-1,
                {},
                {},
                "Can't connect to web server '" + host + "': " + code_text(failure.error),
                false};
    case Call::Send:
        return with_failed_send(failure);
    case Call::Select:
        return with_failed_select(failure);
    case Call::Receive:
        return with_failed_receive(failure);
    default:
        return {0, header, body};
    }
}

bool is_out_of_memory(const Failure &failure)
{
    const bool of_memory =
        failure.call == Call::Malloc || failure.call == Call::Realloc || failure.call == Call::New;
    return of_memory && !calls_seen().only_shrinking_failed;
}

void prepare_exchange(const std::string &whole_request)
{
    constexpr std::int64_t any_time = 1600000000000;
    network = FakeNetwork();
    network.clock_ms = any_time;
    network.events = {data(header_bytes), data(chunks[0]), data(chunks[1]), peer_closes()};
    failing_calls.failed_call_takes_time = [] { network.clock_ms += 1000; };
    set_web_idle_callback(nullptr, nullptr);
    web_cancel_requested = 0;
    running = {};
    running.whole_request = whole_request;
}

std::string exchange_outcome()
{
    const Exchange exchange = {running.result, taken(running.header), taken(running.body),
                               web_last_error(), network.sent == running.whole_request};
    return (running.finished ? shown(exchange) : "") +
           (web_cancel_requested != 0 ? still_to_be_cancelled : "");
}
