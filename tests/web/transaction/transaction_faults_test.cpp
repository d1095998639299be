/// \file
/// What a caller sees of each fault at each place of a reply. The connections are real; the clock
/// is the test's own, and signals end the waits, so that ten seconds of silence take none.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/harness/scripted_server.h"
#include "tests/harness/set_clock.h"
#include "tests/harness/valgrind.h"
#include "tests/web/transaction/connected_signal_timer.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

const std::string whole_reply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nabc";

/// A place of the reply, and what has been received up to there.
const struct Place {
    const char *name;
    std::size_t bytes;
    bool header_is_complete;
    const char *header;
    const char *body;
} places[] = {
    {"before the reply", 0, false, "", ""},
    {"behind one byte", 1, false, "H", ""},
    {"within the status line", 10, false, "HTTP/1.0 2", ""},
    {"behind a carriage return", 16, false, "HTTP/1.0 200 OK\r", ""},
    {"behind a line feed", 17, false, "HTTP/1.0 200 OK\r\n", ""},
    {"behind the second line", 23, false, "HTTP/1.0 200 OK\r\nA: b\r\n", ""},
    {"before the last line feed", 24, false, "HTTP/1.0 200 OK\r\nA: b\r\n\r", ""},
    {"behind the header", 25, true, "HTTP/1.0 200 OK\r\nA: b\r\n\r", ""},
    {"within the body", 26, true, "HTTP/1.0 200 OK\r\nA: b\r\n\r", "a"},
    {"behind the whole reply", 28, true, "HTTP/1.0 200 OK\r\nA: b\r\n\r", "abc"},
};

const char *const timeout_text = "Timeout waiting for web site";

std::string reset_text()
{
    return "Error receiving data from web site: " + code_text(ECONNRESET);
}

/// From here on the peer does nothing any more. Set by the server's thread.
std::atomic<bool> peer_is_silent;
std::int64_t silent_ms;
bool cancel_was_requested;

void pass(std::int64_t milliseconds)
{
    const std::int64_t now = clock_now * 1000LL + clock_microseconds / 1000 + milliseconds;
    clock_now = static_cast<std::time_t>(now / 1000);
    clock_microseconds = static_cast<long>(now % 1000 * 1000);
    silent_ms += milliseconds;
}

/// An idle callback: all but the last millisecond of the ten seconds, then one at a time.
void let_silence_pass(void *)
{
    if (peer_is_silent) {
        pass(silent_ms == 0 ? 9999 : 1);
    }
}

void interrupt(int) {}

void request_cancel(int)
{
    if (peer_is_silent && !cancel_was_requested) {
        cancel_was_requested = true;
        web_cancel_requested = 1;
    }
}

ScriptStep say_that_silence_begins()
{
    return [](ScriptedConnection &connection) {
        const bool waited = connection.wait(50); // what was sent has arrived then
        peer_is_silent = true;
        return waited;
    };
}

/// Each test begins far from any wrap of the millisecond counter, and leaves no descriptor open.
class WebFault : public testing::Test {
protected:
    WebFault() : descriptors_(open_descriptor_count())
    {
        prepare();
    }
    ~WebFault() override
    {
        set_web_idle_callback(nullptr, nullptr);
        EXPECT_EQ(open_descriptor_count(), descriptors_);
    }

    static void prepare()
    {
        clock_now = 1'050'001'000;
        clock_microseconds = 0;
        peer_is_silent = false;
        silent_ms = 0;
        cancel_was_requested = false;
        web_cancel_requested = 0;
        set_web_error("earlier");
        set_web_idle_callback(let_silence_pass, nullptr);
    }

    /// A transaction that nobody may have to wait for.
    static WebOutcome run_soon(WebCall call, std::uint16_t port)
    {
        call.port = port;
        const auto start = std::chrono::steady_clock::now();
        WebOutcome outcome = run(call);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
        return outcome;
    }

    /// A GET from a server that sends the reply up to \p place, and then does \p fault.
    static WebOutcome get_up_to(const Place &place, ServerScript fault)
    {
        prepare();
        ServerScript script = {collect_request(), send_bytes(whole_reply.substr(0, place.bytes))};
        script.insert(script.end(), fault.begin(), fault.end());
        const ScriptedServer server(std::move(script));
        return run_soon({}, server.port());
    }

    static void expect_timeout(const WebOutcome &outcome)
    {
        EXPECT_EQ(outcome.result, 1);
        EXPECT_FALSE(outcome.body.has_value());
        EXPECT_EQ(outcome.error, timeout_text);
    }

    /// A header that is not complete is not handed over.
    static void expect_header_if_complete(const WebOutcome &outcome, const Place &place)
    {
        if (place.header_is_complete) {
            EXPECT_EQ(outcome.header, place.header);
        } else {
            EXPECT_FALSE(outcome.header.has_value());
        }
    }

private:
    std::size_t descriptors_;
};

WebCall post_of(const std::string &body)
{
    WebCall call;
    call.method = "POST";
    call.body = body;
    return call;
}

/// The milliseconds between two signals. Valgrind looks at the whole body before it sends, and
/// begins again when a signal comes meanwhile.
long pause_within_large_post()
{
    return runs_under_valgrind() ? 500 : 20;
}

} // namespace

// Deliberate: a reply that broke off cannot be told from a whole one.
TEST_F(WebFault, OrderlyCloseEndsTheReplyAnywhere)
{
    for (const Place &place : places) {
        SCOPED_TRACE(place.name);
        const WebOutcome outcome = get_up_to(place, {close_connection()});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, place.header);
        EXPECT_EQ(outcome.body, place.body);
        EXPECT_EQ(outcome.error, "earlier");
    }
}

// Deliberate: a header that broke off is a header all the same, and the body decides; the system
// tells of a reset once only, so that the body then is empty.
TEST_F(WebFault, ResetEndsTheHeaderAndFailsTheBody)
{
    for (const Place &place : places) {
        SCOPED_TRACE(place.name);
        const WebOutcome outcome = get_up_to(place, {pause_for(50), reset_connection()});
        EXPECT_EQ(outcome.header, place.header);
        EXPECT_EQ(outcome.error, reset_text());
        if (place.header_is_complete) {
            EXPECT_EQ(outcome.result, -1);
            EXPECT_FALSE(outcome.body.has_value());
        } else {
            EXPECT_EQ(outcome.result, 0);
            EXPECT_EQ(outcome.body, "");
        }
    }
}

TEST_F(WebFault, SilenceTimesOutAfterTenSecondsAnywhere)
{
    for (const Place &place : places) {
        SCOPED_TRACE(place.name);
        const ConnectedSignalTimer timer(interrupt, 20, 20);
        const WebOutcome outcome = get_up_to(place, {say_that_silence_begins(), stay_silent()});
        expect_timeout(outcome);
        expect_header_if_complete(outcome, place);
        EXPECT_EQ(silent_ms, 10000);
    }
}

TEST_F(WebFault, CancelFromASignalHandlerStopsASilentReplyAnywhere)
{
    for (const Place &place : places) {
        SCOPED_TRACE(place.name);
        const ConnectedSignalTimer timer(request_cancel, 20, 20);
        const WebOutcome outcome = get_up_to(place, {say_that_silence_begins(), stay_silent()});
        EXPECT_EQ(outcome.result, 2);
        EXPECT_FALSE(outcome.body.has_value());
        EXPECT_EQ(outcome.error, "User canceled web transaction");
        EXPECT_EQ(web_cancel_requested, 0);
        expect_header_if_complete(outcome, place);
        EXPECT_LT(silent_ms, 10000);
    }
}

// What a caller does who gives the whole transaction a time: one signal may come just before a
// wait, where nothing looks at the request any more, but not all of them.
TEST_F(WebFault, TimerThatKeepsAskingToCancelStopsATrickle)
{
    for (const bool in_body : {false, true}) {
        prepare();
        const std::string begin = in_body ? "A\n\n" : "A\n";
        const ScriptedServer server(
            {collect_request(), send_bytes(begin), send_one_by_one(std::string(100000, 'x'), 5)});
        const ConnectedSignalTimer timer([](int) { web_cancel_requested = 1; }, 100, 20);
        const WebOutcome outcome = run_soon({}, server.port());
        EXPECT_EQ(outcome.result, 2);
        EXPECT_EQ(outcome.header.has_value(), in_body);
        EXPECT_FALSE(outcome.body.has_value());
        EXPECT_EQ(outcome.error, "User canceled web transaction");
    }
}

TEST_F(WebFault, SilenceOfAServerThatNeverAcceptsTimesOut)
{
    const std::string body(1000, 'x');
    for (const WebCall &call : {WebCall(), post_of(body)}) {
        prepare();
        const ScriptedServer server({}, false);
        const ConnectedSignalTimer timer(interrupt, 20, 20);
        peer_is_silent = true;
        const WebOutcome outcome = run_soon(call, server.port());
        expect_timeout(outcome);
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_EQ(silent_ms, 10000);
    }
}

TEST_F(WebFault, ServerThatEndsBeforeItAcceptsGivesAnEmptyReply)
{
    static std::unique_ptr<ScriptedServer> server;
    server = std::make_unique<ScriptedServer>(ServerScript(), false);
    set_web_idle_callback([](void *) { server.reset(); }, nullptr);
    const WebOutcome outcome = run_soon({}, server->port());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "");
    EXPECT_EQ(outcome.body, "");
    EXPECT_EQ(outcome.error, reset_text());
}

TEST_F(WebFault, ReplyToASmallRequestThatIsNeverReadIsWhole)
{
    const std::string body(1000, 'x');
    for (const WebCall &call : {WebCall(), post_of(body)}) {
        prepare();
        const ScriptedServer server({send_bytes(whole_reply), half_close(), stay_silent()});
        const WebOutcome outcome = run_soon(call, server.port());
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\nA: b\r\n\r");
        EXPECT_EQ(outcome.body, "abc");
        EXPECT_EQ(outcome.error, "earlier");
    }
}

// The reply is not looked at before the request is sent.
TEST_F(WebFault, LargePostThatIsNeverReadTimesOut)
{
    const std::string body(20000000, 'x'); // more than the system holds back
    const ServerScript replies[] = {{stay_silent()}, {send_bytes(whole_reply), stay_silent()}};
    for (const ServerScript &reply : replies) {
        prepare();
        const ScriptedServer server(reply);
        // A signal that finds the client in a send makes a second pass.
        const long pause = pause_within_large_post();
        const ConnectedSignalTimer timer([](int) { pass(1000); }, pause, pause);
        const WebOutcome outcome = run_soon(post_of(body), server.port());
        expect_timeout(outcome);
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_GE(silent_ms, 10000);
    }
}

TEST_F(WebFault, LargePostThatIsNeverReadCanBeCancelledFromASignalHandler)
{
    const std::string body(20000000, 'x');
    const ScriptedServer server({say_that_silence_begins(), stay_silent()});
    const long pause = pause_within_large_post();
    const ConnectedSignalTimer timer(request_cancel, pause, pause);
    const WebOutcome outcome = run_soon(post_of(body), server.port());
    EXPECT_EQ(outcome.result, 2);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
}
