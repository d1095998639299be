/// \file
/// Thousands of transactions, of lost connections and of signals.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <new>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include "tests/harness/capture.h"
#include "tests/harness/endurance.h"
#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

const std::string short_reply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nabc";
const std::string short_header = "HTTP/1.0 200 OK\r\nA: b\r\n\r";

std::string receive_error(int code)
{
    return "Error receiving data from web site: " + code_text(code);
}

std::string reset_text()
{
    return receive_error(ECONNRESET);
}

/// Ends the child that the test runs in, with what it was surprised by.
[[noreturn]] void fail_in_child(const char *what, std::size_t round, const WebOutcome &outcome)
{
    std::printf("%s in round %zu: %d, %s, %s, %s", what, round, outcome.result,
                outcome.header.value_or("(none)").c_str(), outcome.body.value_or("(none)").c_str(),
                outcome.error.c_str());
    std::fflush(stdout);
    _exit(1);
}

/// The four ways in which the server below serves, one connection after the other.
enum Manner { WHOLE_REPLY, BROKEN_HEADER, RESET_IN_HEADER, RESET_IN_BODY, MANNERS };

ScriptStep serve_in_turn()
{
    return [round = 0](ScriptedConnection &connection) mutable {
        const int manner = round++ % MANNERS;
        const std::size_t sizes[] = {short_reply.size(), 10, 10, short_header.size() + 2};
        const bool sent = connection.send(short_reply.substr(0, sizes[manner]));
        if (manner == RESET_IN_HEADER || manner == RESET_IN_BODY) {
            connection.reset();
        }
        return sent;
    };
}

bool is_as_served(const WebOutcome &outcome, std::size_t round)
{
    switch (round % MANNERS) {
    case WHOLE_REPLY:
        return outcome.result == 0 && outcome.header == short_header && outcome.body == "abc";
    case BROKEN_HEADER:
        return outcome.result == 0 && outcome.header == "HTTP/1.0 2" && outcome.body == "";
    case RESET_IN_HEADER:
        return outcome.result == 0 && outcome.header == "HTTP/1.0 2" && outcome.body == "" &&
               outcome.error == reset_text();
    default:
        return outcome.result == -1 && outcome.header == short_header &&
               !outcome.body.has_value() && outcome.error == reset_text();
    }
}

void run_rounds(std::size_t rounds, const WebCall &call)
{
    for (std::size_t round = 0; round < rounds; ++round) {
        const WebOutcome outcome = run(call);
        if (!is_as_served(outcome, round)) {
            fail_in_child("another outcome", round, outcome);
        }
    }
}

/// What a connection that was lost while the request was sent can give: the receive finds it
/// closed, or fails, within the header or, when the system tells of the loss later, within the
/// body.
bool is_of_a_lost_connection(const WebOutcome &outcome)
{
    if (outcome.header != "") {
        return false;
    }
    const bool lost = outcome.error == reset_text() || outcome.error == receive_error(EPIPE);
    return outcome.result == 0 ? outcome.body == "" && (lost || outcome.error == "earlier")
                               : outcome.result == -1 && lost;
}

ScriptStep collect_bytes(std::size_t count)
{
    return [count](ScriptedConnection &connection) {
        return connection.collect_until(
            [count](const std::string &received) { return received.size() >= count; });
    };
}

std::atomic<int> signals_taken;

void take_signal(int)
{
    ++signals_taken;
}

/// Sends SIGUSR1 to the thread that made it, the next as soon as the last was taken, from begin()
/// on until \p count were taken. Without SA_RESTART.
class SignalStorm {
public:
    explicit SignalStorm(int count)
    {
        signals_taken = 0;
        struct sigaction action = {};
        action.sa_handler = take_signal;
        sigemptyset(&action.sa_mask);
        sigaction(SIGUSR1, &action, &before_);
        thread_ = std::thread([this, count, target = pthread_self()] { run(count, target); });
    }
    SignalStorm(const SignalStorm &) = delete;
    SignalStorm &operator=(const SignalStorm &) = delete;
    void begin()
    {
        begun_ = true;
    }
    ~SignalStorm()
    {
        stopped_ = true;
        thread_.join();
        sigaction(SIGUSR1, &before_, nullptr);
    }

private:
    void run(int count, pthread_t target)
    {
        while (!begun_ && !stopped_) {
            std::this_thread::yield();
        }
        for (int sent = 0; sent < count && !stopped_; ++sent) {
            pthread_kill(target, SIGUSR1);
            while (signals_taken <= sent && !stopped_) {
                std::this_thread::yield();
            }
        }
    }

    struct sigaction before_;
    std::atomic<bool> begun_ = false;
    std::atomic<bool> stopped_ = false;
    std::thread thread_;
};

/// Sends \p bytes every millisecond until so many signals were taken, and adds them to \p all.
ScriptStep send_during_signals(std::string_view bytes, int count, std::string &all)
{
    return [bytes, count, &all](ScriptedConnection &connection) {
        while (signals_taken < count) {
            if (!connection.send(bytes) || !connection.wait(1)) {
                return false;
            }
            all += bytes;
        }
        return true;
    };
}

} // namespace

TEST(WebEndurance, LeavesNoDescriptorAndNoByteBehind)
{
    const std::size_t rounds = repetitions(20000, 1000);
    const std::size_t warm_up = 400;
    ScriptedServer server({collect_request(), serve_in_turn()});
    WebCall call;
    call.port = server.port();
    const ChildResult child = run_in_child(
        [&] {
            run_rounds(warm_up, call);
            const std::size_t descriptors = open_descriptor_count();
            const std::size_t bytes = allocated_bytes().value_or(0);
            run_rounds(rounds, call);
            const std::size_t more = allocated_bytes().value_or(0) - bytes;
            // Less than one byte for each transaction is the allocator's own to and fro.
            std::printf("%d descriptors, %s",
                        static_cast<int>(open_descriptor_count() - descriptors),
                        static_cast<std::ptrdiff_t>(more) < static_cast<std::ptrdiff_t>(rounds)
                            ? "nothing"
                            : std::to_string(more).c_str());
        },
        100);
    EXPECT_EQ(child.exit_status, 0);
    EXPECT_EQ(child.out, "0 descriptors, nothing");
    EXPECT_EQ(server.connection_count(), warm_up + rounds);
}

// However the peer goes, and however much it has read by then. One that reads nothing may be gone
// before the client has connected.
TEST(WebEndurance, OutlivesAThousandPeersThatGoWhileALargePostIsSent)
{
    const std::size_t rounds = repetitions(1000, 50);
    for (const std::size_t bytes_read : {1u, 100000u}) {
        for (const ScriptStep &end : {close_connection(), reset_connection()}) {
            ScriptedServer server({collect_bytes(bytes_read), end});
            const std::uint16_t port = server.port();
            const ChildResult child = run_in_child(
                [port, rounds] {
                    std::signal(SIGPIPE, SIG_DFL);
                    const std::string body(20000000, 'x'); // more than the system holds back
                    WebCall call;
                    call.port = port;
                    call.method = "POST";
                    call.body = body;
                    for (std::size_t round = 0; round < rounds; ++round) {
                        set_web_error("earlier");
                        const WebOutcome outcome = run(call);
                        if (!is_of_a_lost_connection(outcome)) {
                            fail_in_child("another outcome", round, outcome);
                        }
                    }
                },
                100);
            EXPECT_EQ(child.signal, 0);
            EXPECT_EQ(child.exit_status, 0);
            EXPECT_EQ(child.out, "");
        }
    }
}

TEST(WebEndurance, EndsAnEndlessReplyWhereTheMemoryEnds)
{
    if (repetitions(1, 0) == 0) {
        GTEST_SKIP() << "the tool that watches the memory needs more of it";
    }
    const std::string piece(65536, 'x');
    ScriptedServer server(
        {collect_request(), send_bytes("A\n\n"), [&piece](ScriptedConnection &connection) {
             while (connection.send(piece)) {
             }
             return true;
         }});
    WebCall call;
    call.port = server.port();
    const ChildResult child = run_in_child([&call] {
        const rlimit limit = {256u << 20, 256u << 20};
        setrlimit(RLIMIT_AS, &limit);
        const std::size_t descriptors = open_descriptor_count();
        try {
            run(call);
        } catch (const std::bad_alloc &) {
            std::fputs(open_descriptor_count() == descriptors ? "closed" : "open", stdout);
        }
    });
    EXPECT_EQ(child.signal, 0);
    EXPECT_EQ(child.out, "closed");
}

TEST(WebEndurance, LosesNothingThroughTenThousandSignals)
{
    const int signals = 10000;
    std::string header = "HTTP/1.0 200 OK\r\nA: ";
    std::string body;
    WebOutcome outcome;
    {
        SignalStorm storm(signals);
        const ScriptStep begin_storm = [&storm](ScriptedConnection &) {
            storm.begin(); // not before: a signal may end the connecting
            return true;
        };
        const ScriptedServer server({collect_request(), begin_storm, send_bytes(header),
                                     send_during_signals("b", signals / 2, header),
                                     send_bytes("\r\n\r\n"),
                                     send_during_signals("0123456789", signals, body)});
        WebCall call;
        call.port = server.port();
        set_web_error("earlier");
        outcome = run(call);
    }
    EXPECT_EQ(signals_taken, signals);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, header + "\r\n\r");
    EXPECT_EQ(outcome.body, body);
    EXPECT_EQ(outcome.error, "earlier");
    EXPECT_FALSE(body.empty());
}
