/// \file
/// Replies and requests that are very large or very slow, clocks that are set in the middle of a
/// wait, and thousands of transactions that fail.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <netdb.h>
#include <string>

#include "tests/harness/endurance.h"
#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

using TransactionLimits = FakeNetworkTest;

constexpr std::size_t mebibyte = std::size_t(1) << 20;
const char *const timeout_text = "Timeout waiting for web site";

/// What a transaction meets in the rounds below, one after the other.
const struct Fate {
    int lookup_error;
    int socket_error;
    int connect_error;
    int send_error;
    bool cancelled;
    std::deque<NetworkEvent> events;
    int result;
} fates[] = {
    {0, 0, 0, 0, false, {data("A\n\nabc"), peer_closes()}, 0},
    {HOST_NOT_FOUND, 0, 0, 0, false, {}, -1},
    {0, EMFILE, 0, 0, false, {}, -1},
    {0, 0, ECONNREFUSED, 0, false, {}, -1},
    {0, 0, 0, EPIPE, false, {data("A\n\nabc"), peer_closes()}, 0},
    {0, 0, 0, EAGAIN, false, {}, 1},
    {0, 0, 0, 0, false, {data("A\nB")}, 1},
    {0, 0, 0, 0, false, {data("A\n\nabc")}, 1},
    {0, 0, 0, 0, true, {data("A\nB")}, 2},
    {0, 0, 0, 0, true, {data("A\n\nabc")}, 2},
    {0, 0, 0, 0, false, {data("A\n"), receive_error(EIO), peer_closes()}, 0},
    {0, 0, 0, 0, false, {data("A\n\nabc"), receive_error(EIO)}, -1},
    {0, 0, 0, 0, false, {data("A"), wrong_readiness()}, 1},
};

void meet(const Fate &fate)
{
    const std::int64_t now = network.clock_ms;
    network = FakeNetwork();
    network.clock_ms = now % 1000000 + 1050000000000; // far from any wrap of the counter
    network.lookup_error = fate.lookup_error;
    network.socket_error = fate.socket_error;
    network.connect_error = fate.connect_error;
    network.send_error = fate.send_error;
    network.events = fate.events;
    web_cancel_requested = fate.cancelled ? 1 : 0;
    WebCall call;
    call.user = "Aladdin";
    call.password = "open sesame";
    EXPECT_EQ(run(call).result, fate.result);
}

/// The bytes on the heap once no earlier transaction has anything left there but a short error
/// text.
std::size_t bytes_at_rest()
{
    network = FakeNetwork();
    set_web_error("earlier");
    return allocated_bytes().value_or(0);
}

} // namespace

TEST_F(TransactionLimits, TakeAHeaderOf8Mebibytes)
{
    const std::size_t size = repetitions(8, 2) * mebibyte;
    network.keeps_records = false;
    std::string header = "HTTP/1.0 200 OK\r\nA: " + std::string(size, 'b') + "\r\n\r";
    network.events = {data(header + "\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.header == header);
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(TransactionLimits, TakeABodyOf64Mebibytes)
{
    const std::size_t size = repetitions(64, 2) * mebibyte;
    network.keeps_records = false;
    const std::string body(size, 'b');
    network.events = {data("A\n\n" + body), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.body == body);
}

TEST_F(TransactionLimits, DeliverAPostOf8MebibytesThroughSendsOfOneByte)
{
    const std::size_t size = repetitions(8, 2) * mebibyte;
    network.keeps_records = false;
    network.send_at_most = 1;
    network.events = {data("A\n\nabc"), peer_closes()};
    std::string body(size, 'x');
    for (std::size_t i = 0; i < size; i += 1021) {
        body[i] = static_cast<char>(i / 1021);
    }
    WebCall call;
    call.method = "POST";
    call.body = body;
    EXPECT_EQ(run(call).result, 0);
    EXPECT_TRUE(network.sent == request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body));
}

// The ten seconds are those of each byte, so that 1,000 bytes may take two and a half hours.
TEST_F(TransactionLimits, AreNotReachedByAHeaderOfOneByteEveryNineSeconds)
{
    std::string header = "HTTP/1.0 200 OK\r\nA: " + std::string(976, 'b') + "\r\n\r";
    ASSERT_EQ(header.size(), 999u);
    for (const char byte : header + "\n") {
        network.events.push_back(silence(9000));
        network.events.push_back(data({byte}));
    }
    network.events.push_back(peer_closes());
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, header);
    EXPECT_EQ(elapsed_ms(), 9000000);
}

TEST_F(TransactionLimits, AreNotReachedByABodyOfOneByteEveryNineSeconds)
{
    network.events = {data("A\n\n")};
    for (int i = 0; i < 1000; ++i) {
        network.events.push_back(silence(9000));
        network.events.push_back(data("x"));
    }
    network.events.push_back(peer_closes());
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, std::string(1000, 'x'));
    EXPECT_EQ(elapsed_ms(), 9000000);
}

TEST_F(TransactionLimits, OfATrickleAreSetByACancelRequestWithinTheHeader)
{
    set_web_idle_callback(
        [](void *) {
            if (elapsed_ms() >= 30000) {
                web_cancel_requested = 1;
            }
        },
        nullptr);
    for (int i = 0; i < 1000; ++i) {
        network.events.push_back(silence(9000));
        network.events.push_back(data("x"));
    }
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 2);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(elapsed_ms(), 30100);
}

// Deliberate: within the body only a wait that brought nothing looks at the request.
TEST_F(TransactionLimits, OfATrickleAreNotSetByACancelRequestWithinTheBody)
{
    web_cancel_requested = 1;
    network.events = {data("A\n\n"), silence(9000), data("x"),
                      silence(9000), data("y"),     peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, "xy");
    EXPECT_EQ(web_cancel_requested, 1);
}

// Deliberate: the clock is the one that people set.
TEST_F(TransactionLimits, MoveWithAClockThatIsSetDuringAWait)
{
    constexpr std::int64_t hour = 3600000;
    const struct {
        const char *reply;
        std::int64_t step_ms;
        std::int64_t silent_ms; ///< before the reply ends
        int result;
    } rows[] = {
        {"A", hour, 5000, 1},          // forward: the deadline has passed at the next look
        {"A", -hour, hour + 5000, 0},  // back: it is an hour further away
        {"A", -hour, hour + 20000, 1}, // but it comes
        {"A\n\n", hour, 5000, 1},
        {"A\n\n", -hour, hour + 5000, 0},
        {"A\n\n", -hour, hour + 20000, 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.reply) + ", " + std::to_string(row.step_ms) + ", " +
                     std::to_string(row.silent_ms));
        set_counter(1000000000);
        set_web_error("earlier");
        // A signal comes between the step and the rest, as it may at any time.
        network.events = {data(row.reply),     silence(1050),          clock_step(row.step_ms),
                          select_error(EINTR), silence(row.silent_ms), data("\n\n"),
                          peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, row.result);
        EXPECT_EQ(outcome.error, row.result == 1 ? timeout_text : "earlier");
    }
}

// Deliberate: where the counter passes from its largest to its least value, the two numbers are
// compared with their signs. A deadline that no look at the clock falls behind before that passage
// stays ahead until the counter has gone all the way round.
TEST_F(TransactionLimits, MissADeadlineThatTheLooksAtTheClockStepOverWithThePassage)
{
    set_web_idle_callback(
        [](void *) {
            if (elapsed_ms() >= 100000) {
                web_cancel_requested = 1;
            }
        },
        nullptr);
    for (const char *reply : {"A\n", "A\n\n"}) {
        for (const std::int64_t silent_ms : {90000, 200000}) {
            SCOPED_TRACE(testing::PrintToString(reply) + ", " + std::to_string(silent_ms));
            set_counter(0x7fffffffu - 10000 - 20);
            // The looks are 50 ms off the beat, so that none is within the last 20 ms.
            network.events = {data(reply),         silence(50),
                              select_error(EINTR), silence(silent_ms - 50),
                              data("\nabc"),       peer_closes()};
            EXPECT_EQ(run({}).result, silent_ms < 100000 ? 0 : 2);
        }
    }
}

// The system ends no receive so while there is something to receive; but if it did, for ever, then
// the transaction would not go on for ever.
TEST_F(TransactionLimits, EndAHeaderWhoseReceivesAreInterruptedForTenSeconds)
{
    for (const int error_number : {EAGAIN, EINTR}) {
        network.receive_error_ms = 20;
        network.events = {data("A\n")};
        network.events.insert(network.events.end(), 1000, receive_error(error_number));
        set_counter(1000000);
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_EQ(outcome.error, timeout_text);
        EXPECT_GE(elapsed_ms(), 10000);
        EXPECT_LE(elapsed_ms(), 10100);
    }
}

TEST_F(TransactionLimits, LeaveNoDescriptorAndNoByteBehindWhateverATransactionMeets)
{
    const std::size_t rounds = repetitions(20000, 1000);
    for (int round = 0; round < 20; ++round) {
        for (const Fate &fate : fates) {
            meet(fate);
        }
    }
    const std::size_t before = bytes_at_rest();
    for (std::size_t round = 0; round < rounds && !HasFailure(); ++round) {
        meet(fates[round % std::size(fates)]);
    }
    // Less than one byte for each transaction is the allocator's own to and fro.
    EXPECT_LT(bytes_at_rest(), before + rounds);
}
