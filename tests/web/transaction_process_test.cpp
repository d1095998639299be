/// \file
/// Transactions in a process with signals, cancel requests, idle callbacks and many descriptors.
#include "tests/harness/capture.h"
#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"
#include "web/web.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

std::int64_t milliseconds_since(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

/// A signal handler without SA_RESTART and a timer that raises the signal, for as long as it lives.
class SignalTimer {
public:
    SignalTimer(void (*handler)(int), long first_ms, long interval_ms)
    {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigemptyset(&action.sa_mask);
        sigaction(SIGALRM, &action, &before_);
        const itimerval timer = {{0, interval_ms * 1000}, {0, first_ms * 1000}};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
    SignalTimer(const SignalTimer &) = delete;
    SignalTimer &operator=(const SignalTimer &) = delete;
    ~SignalTimer()
    {
        const itimerval off = {};
        setitimer(ITIMER_REAL, &off, nullptr);
        sigaction(SIGALRM, &before_, nullptr);
    }

private:
    struct sigaction before_;
};

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

/// Runs \p action in a child that may have \p limit descriptors; exit status 77 when it may not.
ChildResult with_descriptor_limit(rlim_t limit, const std::function<void()> &action)
{
    return run_in_child([&] {
        rlimit limits;
        getrlimit(RLIMIT_NOFILE, &limits);
        limits.rlim_cur = limit;
        if (setrlimit(RLIMIT_NOFILE, &limits) != 0) {
            _exit(77);
        }
        action();
    });
}

/// Opens descriptors until \p count are open or no more are to be had.
void open_descriptors(int count)
{
    while (true) {
        const int descriptor = open("/dev/null", O_RDONLY);
        if (descriptor < 0 || descriptor >= count - 1) {
            return;
        }
    }
}

/// Runs a transaction and writes its error text; exit status 1 when its result is not -1.
void write_failure(std::uint16_t port)
{
    WebCall call;
    call.port = port;
    const WebOutcome outcome = run(call);
    std::fputs(outcome.error.c_str(), stdout);
    if (outcome.result != -1) {
        std::fflush(stdout);
        _exit(1);
    }
}

} // namespace

TEST_F(WebProcess, CancelsASilentServerFromASignalHandler)
{
    ScriptedServer server({collect_request(), send_bytes("HTTP/1.0 200"), stay_silent()});
    const Clock::time_point start = Clock::now();
    const SignalTimer timer(request_cancel, 250, 0);
    expect_cancel(get_from(server));
    EXPECT_GE(milliseconds_since(start), 240);
    EXPECT_LT(milliseconds_since(start), 3000);
}

TEST_F(WebProcess, CancelsWithinATenthOfASecond)
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

TEST_F(WebProcess, LosesNothingInAStormOfSignals)
{
    const std::string header = "HTTP/1.0 200 OK\r\nA: " + std::string(2000, 'b') + "\r\n\r";
    const std::string body(2000000, 'c');
    ScriptedServer server({collect_request(), pause_for(100), send_one_by_one(header, 0),
                           pause_for(100), send_bytes("\nabc"), pause_for(100), send_bytes(body),
                           pause_for(100)});
    set_web_idle_callback(count_idle_call, nullptr);
    const SignalTimer storm(count_signal, 1, 1);
    const WebOutcome outcome = get_from(server);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.header == header);
    EXPECT_TRUE(outcome.body == "abc" + body);
    EXPECT_EQ(outcome.error, "earlier");
    EXPECT_GT(signal_count, 50);
    EXPECT_GT(idle_calls, 20) << "each wait that a signal ends is an empty wait";
    EXPECT_EQ(server.requests(),
              std::vector<std::string>{request_text("GET / HTTP/1.0", "127.0.0.1")});
}

TEST_F(WebProcess, PostsAllBytesInAStormOfSignals)
{
    const std::string body(20000000, 'c');
    ScriptedServer server({pause_for(200), collect_request(body.size()), send_bytes("A\n\nabc")});
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    const SignalTimer storm(count_signal, 1, 1);
    EXPECT_EQ(run(call).body, "abc");
    EXPECT_GT(signal_count, 50);
    EXPECT_TRUE(server.requests() == std::vector<std::string>{request_text(
                                         "POST / HTTP/1.0", "127.0.0.1", "", "", body)});
}

TEST_F(WebProcess, SaysThatThereIsNoDescriptorLeft)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    const ChildResult child = with_descriptor_limit(64, [&] {
        open_descriptors(64);
        write_failure(server.port());
    });
    EXPECT_EQ(child.exit_status, 0);
    EXPECT_EQ(child.out, "Can't create web socket, " + code_text(EMFILE));
    EXPECT_EQ(server.connection_count(), 0u);
}

TEST_F(WebProcess, RefusesASocketBehindTheDescriptorsOfTheWait)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    for (const int count : {1024, 1100}) {
        const ChildResult child = with_descriptor_limit(1200, [&] {
            open_descriptors(count);
            write_failure(server.port());
        });
        if (child.exit_status == 77) {
            GTEST_SKIP() << "this system does not allow 1,200 descriptors";
        }
        EXPECT_EQ(child.signal, 0);
        EXPECT_EQ(child.exit_status, 0);
        EXPECT_EQ(child.out, "Can't create web socket, " + code_text(EMFILE));
    }
    EXPECT_EQ(server.connection_count(), 0u);
}

TEST_F(WebProcess, LeavesNoDescriptorOpenWhereASocketIsRefused)
{
    const ChildResult child = with_descriptor_limit(1200, [&] {
        open_descriptors(1100);
        const std::size_t before = open_descriptor_count();
        write_failure(9);
        if (open_descriptor_count() != before) {
            _exit(1);
        }
    });
    if (child.exit_status == 77) {
        GTEST_SKIP() << "this system does not allow 1,200 descriptors";
    }
    EXPECT_EQ(child.exit_status, 0);
}

TEST_F(WebProcess, TakesTheLastDescriptorOfTheWait)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    const ChildResult child = with_descriptor_limit(1200, [&] {
        open_descriptors(1023); // 0 to 1022
        WebCall call;
        call.port = server.port();
        std::fputs(run(call).body.value_or("(none)").c_str(), stdout);
    });
    if (child.exit_status == 77) {
        GTEST_SKIP() << "this system does not allow 1,200 descriptors";
    }
    EXPECT_EQ(child.out, "abc");
}
