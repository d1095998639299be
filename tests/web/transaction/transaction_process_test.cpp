/// \file
/// Transactions in a process with signals, cancel requests and idle callbacks.
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/harness/scripted_server.h"
#include "tests/harness/valgrind.h"
#include "tests/web/transaction/connected_signal_timer.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

using Clock = std::chrono::steady_clock;

std::int64_t milliseconds_since(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

volatile std::sig_atomic_t signal_count;

void count_signal(int)
{
    signal_count = signal_count + 1;
}

void request_cancel(int)
{
    web_cancel_requested = 1;
}

int idle_calls;

void count_idle_call(void *)
{
    ++idle_calls;
}

class WebProcess : public testing::Test {
protected:
    WebProcess() : descriptors_(open_descriptor_count())
    {
        idle_calls = 0;
        signal_count = 0;
        set_web_idle_callback(nullptr, nullptr);
        set_web_error("earlier");
        web_cancel_requested = 0;
    }
    ~WebProcess() override
    {
        set_web_idle_callback(nullptr, nullptr);
        EXPECT_EQ(open_descriptor_count(), descriptors_);
    }

private:
    std::size_t descriptors_;
};

WebOutcome get_from(const ScriptedServer &server)
{
    WebCall call;
    call.port = server.port();
    return run(call);
}

void expect_cancel(const WebOutcome &outcome)
{
    EXPECT_EQ(outcome.result, 2);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
}

} // namespace

TEST_F(WebProcess, CancelsASilentServerFromASignalHandler)
{
    ScriptedServer server({collect_request(), send_bytes("HTTP/1.0 200"), stay_silent()});
    const Clock::time_point start = Clock::now();
    const ConnectedSignalTimer timer(request_cancel, 250, 0);
    expect_cancel(get_from(server));
    EXPECT_GE(milliseconds_since(start), 240);
    EXPECT_LT(milliseconds_since(start), 3000);
}

// That this takes a tenth of a second and no longer is told by a clock of the tests' own, which no
// busy machine delays: HeaderWait.CancelsAtTheFirstEmptyWait.
TEST_F(WebProcess, CancelsAtTheIdleCallbacksRequestLongBeforeTheTimeOut)
{
    static Clock::time_point requested;
    set_web_idle_callback(
        [](void *) {
            web_cancel_requested = 1;
            requested = Clock::now();
        },
        nullptr);
    ScriptedServer server({collect_request(), stay_silent()});
    expect_cancel(get_from(server));
    EXPECT_GE(milliseconds_since(requested), 90);
    EXPECT_LT(milliseconds_since(requested), 2000) << "some time is left to a busy machine";
}

TEST_F(WebProcess, CancelsAServerThatNeverAccepts)
{
    ScriptedServer server({}, false);
    web_cancel_requested = 1;
    const Clock::time_point start = Clock::now();
    expect_cancel(get_from(server));
    EXPECT_LT(milliseconds_since(start), 3000);
}

TEST_F(WebProcess, CallsTheIdleCallbackTenTimesASecond)
{
    ScriptedServer server({collect_request(), pause_for(1050), send_bytes("A\n\nabc")});
    set_web_idle_callback(count_idle_call, nullptr);
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(get_from(server).body, "abc");
    const std::int64_t elapsed = milliseconds_since(start);
    EXPECT_LE(idle_calls, elapsed / 100);
    EXPECT_GE(idle_calls, 5) << "some time is left to a busy machine";
}

TEST_F(WebProcess, ClosesTheConnectionWhenTheIdleCallbackThrows)
{
    ScriptedServer server({collect_request(), collect_to_end()});
    set_web_idle_callback([](void *) { throw std::runtime_error("idle"); }, nullptr);
    EXPECT_THROW(get_from(server), std::runtime_error);
    EXPECT_TRUE(server.wait_until_served()) << "the server sees the end of the connection";
}

TEST_F(WebProcess, PostsAllBytesInAStormOfSignals)
{
    if (runs_under_valgrind()) {
        GTEST_SKIP() << "it looks at the whole body before it sends, which the next signal ends";
    }
    const std::string body(20000000, 'c');
    ScriptedServer server({pause_for(200), collect_request(body.size()), send_bytes("A\n\nabc")});
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    const ConnectedSignalTimer storm(count_signal, 1, 1);
    EXPECT_EQ(run(call).body, "abc");
    EXPECT_GT(signal_count, 50);
    EXPECT_TRUE(server.requests() == std::vector<std::string>{request_text(
                                         "POST / HTTP/1.0", "127.0.0.1", "", "", body)});
}
