/// \file
/// How a transaction waits: the length of each wait, time-outs, the idle callback, cancelling and
/// the clock, with a clock that only the waits move.
/// Tests web/wait.cpp.
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

const char *const timeout_text = "Timeout waiting for web site";
const char *const cancel_text = "User canceled web transaction";

/// Counts the calls of the idle callback and may do something at one of them.
class TransactionWait : public FakeNetworkTest {
protected:
    TransactionWait()
    {
        calls = 0;
        cancel_at_call = throw_at_call = 0;
        set_web_idle_callback(idle, &calls);
    }

    static void idle(void *argument)
    {
        int &count = *static_cast<int *>(argument);
        ++count;
        if (count == cancel_at_call) {
            web_cancel_requested = 5;
        }
        if (count == throw_at_call) {
            throw std::runtime_error("from the idle callback");
        }
    }

    static int calls;
    static int cancel_at_call;
    static int throw_at_call;
};

int TransactionWait::calls;
int TransactionWait::cancel_at_call;
int TransactionWait::throw_at_call;

using HeaderWait = TransactionWait;
using BodyWait = TransactionWait;
using MillisecondCounter = TransactionWait;

void expect_timeout(const WebOutcome &outcome)
{
    EXPECT_EQ(outcome.result, 1);
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, timeout_text);
}

void expect_cancel(const WebOutcome &outcome)
{
    EXPECT_EQ(outcome.result, 2);
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, cancel_text);
    EXPECT_EQ(web_cancel_requested, 0);
}

} // namespace

TEST_F(HeaderWait, TimesOutAfterTenSilentSeconds)
{
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(elapsed_ms(), 10000);
}

TEST_F(HeaderWait, LooksUpEveryTenthOfASecond)
{
    run({});
    EXPECT_EQ(network.waits.size(), 100u);
    for (const FakeNetwork::Wait &wait : network.waits) {
        EXPECT_EQ(wait.microseconds, 100000);
        EXPECT_EQ(wait.width, 1024);
    }
}

TEST_F(HeaderWait, MeasuresSilenceFromTheLastByte)
{
    network.events = {silence(9950), data("A"),  silence(9950), data("\r"),
                      silence(9950), data("\n"), silence(5000), data("B")};
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(elapsed_ms(), 3 * 9950 + 5000 + 10000);
}

TEST_F(HeaderWait, CallsTheIdleCallbackAtEveryEmptyWait)
{
    network.events = {silence(350), data("A"),  silence(50),  data("\n"),
                      silence(150), data("\n"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(calls, 3 + 0 + 1);
}

TEST_F(HeaderWait, CallsTheIdleCallbackAHundredTimesBeforeItTimesOut)
{
    run({});
    EXPECT_EQ(calls, 100);
}

TEST_F(HeaderWait, CallsTheIdleCallbackWhenTheWaitFails)
{
    network.events = {select_error(EINTR), select_error(EBADF), data("A\n\n"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(calls, 2);
}

TEST_F(HeaderWait, CallsNoIdleCallbackThatIsSwitchedOff)
{
    set_web_idle_callback(nullptr, &calls);
    expect_timeout(run({}));
    EXPECT_EQ(calls, 0);
}

TEST_F(HeaderWait, PassesANullIdleArgumentOn)
{
    static void *seen;
    seen = &seen;
    set_web_idle_callback([](void *argument) { seen = argument; }, nullptr);
    expect_timeout(run({}));
    EXPECT_EQ(seen, nullptr);
}

TEST_F(HeaderWait, KeepsTheIdleCallbackForTheNextTransaction)
{
    for (int round = 1; round <= 3; ++round) {
        network.events = {silence(150), data("A\n\n"), peer_closes()};
        EXPECT_EQ(run({}).result, 0);
        EXPECT_EQ(calls, round);
    }
}

TEST_F(HeaderWait, DoesNotRenewTheDeadlineAtAFailedWait)
{
    network.events = {silence(5050), select_error(EINTR), silence(20000)};
    expect_timeout(run({}));
    // The wait that failed was 50 ms old, so the others end 50 ms off the beat.
    EXPECT_EQ(elapsed_ms(), 10050);
}

TEST_F(HeaderWait, TimesOutWhenSomethingElseIsReady)
{
    network.events = {data("A\n"), wrong_readiness(), data("\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(elapsed_ms(), 0);
}

TEST_F(HeaderWait, CancelsAtTheFirstEmptyWait)
{
    cancel_at_call = 3;
    const WebOutcome outcome = run({});
    expect_cancel(outcome);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_EQ(elapsed_ms(), 400);
    EXPECT_EQ(calls, 3) << "the wait that cancels calls no idle callback";
}

TEST_F(HeaderWait, HonoursACancelRequestFromBeforeTheStart)
{
    web_cancel_requested = 1;
    expect_cancel(run({}));
    EXPECT_EQ(elapsed_ms(), 100);
    EXPECT_EQ(calls, 0);
}

TEST_F(HeaderWait, CancelsWhenTheWaitFails)
{
    web_cancel_requested = -1;
    network.events = {select_error(EINTR), data("A\n\n"), peer_closes()};
    expect_cancel(run({}));
    EXPECT_EQ(elapsed_ms(), 0);
}

TEST_F(HeaderWait, LeavesACancelRequestForTheNextTransactionWhenThereIsNoEmptyWait)
{
    web_cancel_requested = 1;
    network.events = {data("A\n\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_EQ(web_cancel_requested, 1);
    network.events.clear();
    expect_cancel(run({}));
}

TEST_F(HeaderWait, LeavesACancelRequestWhenTheTransactionFailsBefore)
{
    web_cancel_requested = 1;
    network.connect_error = ECONNREFUSED;
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(web_cancel_requested, 1);
}

TEST_F(HeaderWait, ClosesTheConnectionWhenTheIdleCallbackThrows)
{
    throw_at_call = 2;
    network.events = {data("HTTP/1.0 200 OK\r\n")};
    WebCall call;
    call.user = "Aladdin";
    call.password = "open sesame";
    EXPECT_THROW(run(call), std::runtime_error);
    EXPECT_EQ(calls, 2);
}

TEST_F(BodyWait, TimesOutAfterTenSilentSeconds)
{
    network.events = {data("A\n\nabc")};
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(elapsed_ms(), 10000);
    EXPECT_EQ(network.waits.back().microseconds, 10000000);
    EXPECT_EQ(network.waits.back().width, 1024);
}

TEST_F(BodyWait, MeasuresSilenceFromTheLastChunk)
{
    network.events = {data("A\n\n"), silence(9990), data("abc"), silence(9990), data("def")};
    expect_timeout(run({}));
    EXPECT_EQ(elapsed_ms(), 9990 + 9990 + 10000);
}

// Deliberate: unlike the header's, the body's waits are ten seconds long.
TEST_F(BodyWait, CallsTheIdleCallbackOnlyAfterTenSilentSeconds)
{
    network.events = {data("A\n\n"), silence(9990), data("abc"), silence(9990), peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
    EXPECT_EQ(calls, 0);
    network.events = {data("A\n\nabc")};
    expect_timeout(run({}));
    EXPECT_EQ(calls, 1);
}

TEST_F(BodyWait, CallsTheIdleCallbackWhenTheWaitFails)
{
    network.events = {data("A\n\n"), silence(30),         select_error(EINTR),
                      data("abc"),   select_error(EINTR), peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
    EXPECT_EQ(calls, 2);
}

// Deliberate, as with the idle callback.
TEST_F(BodyWait, CancelsOnlyAfterTenSilentSeconds)
{
    web_cancel_requested = 1;
    network.events = {data("A\n\n"), silence(9990), data("abc")};
    const WebOutcome outcome = run({});
    expect_cancel(outcome);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(elapsed_ms(), 9990 + 10000);
    EXPECT_EQ(calls, 0);
}

TEST_F(BodyWait, CancelsWhenTheWaitFails)
{
    web_cancel_requested = 1;
    network.events = {data("A\n\nabc"), silence(70), select_error(EINTR), peer_closes()};
    const WebOutcome outcome = run({});
    expect_cancel(outcome);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(elapsed_ms(), 70);
}

TEST_F(BodyWait, TimesOutWhenTheIdleCallbackAsksToCancelTooLate)
{
    cancel_at_call = 1;
    network.events = {data("A\n\nabc")};
    expect_timeout(run({}));
    EXPECT_EQ(web_cancel_requested, 5);
}

// Deliberate: the deadline is looked at before a wait, not behind one that brought something.
TEST_F(BodyWait, TakesWhatArrivesBehindTheDeadlineOfAnInterruptedWait)
{
    network.events = {data("A\n\n"), silence(6000), select_error(EINTR),
                      silence(9000), data("abc"),   peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
}

TEST_F(BodyWait, DoesNotRenewTheDeadlineAtAFailedWait)
{
    network.events = {data("A\n\n"), silence(6000), select_error(EINTR)};
    expect_timeout(run({}));
    EXPECT_EQ(elapsed_ms(), 16000);
    EXPECT_EQ(calls, 2);
}

TEST_F(BodyWait, TimesOutWhenSomethingElseIsReady)
{
    network.events = {data("A\n\n"), data("abc"), wrong_readiness(), data("def"), peer_closes()};
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(elapsed_ms(), 0);
}

TEST_F(BodyWait, ClosesTheConnectionWhenTheIdleCallbackThrows)
{
    throw_at_call = 1;
    network.events = {data("A\n\nabc"), select_error(EINTR)};
    char *header = nullptr;
    char *body = nullptr;
    EXPECT_THROW(web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body,
                                 nullptr, 0, nullptr, nullptr),
                 std::runtime_error);
    EXPECT_STREQ(header, "A\n");
    EXPECT_EQ(body, nullptr);
    std::free(header);
}

TEST_F(BodyWait, FindsTheHeaderStoredAlready)
{
    static char *header;
    static std::string seen;
    header = nullptr;
    set_web_idle_callback([](void *) { seen = header != nullptr ? header : "(none)"; }, nullptr);
    network.events = {data("A\n\nabc"), select_error(EINTR), peer_closes()};
    char *body = nullptr;
    EXPECT_EQ(web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body, nullptr,
                              0, nullptr, nullptr),
              0);
    EXPECT_EQ(seen, "A\n");
    std::free(header);
    std::free(body);
}

// Deliberate: the deadline is compared as a signed 32-bit number.
TEST_F(MillisecondCounter, TimesOutAtOnceWhenTheDeadlineIsBehindItsLargestValue)
{
    for (const std::uint32_t counter : {0x7fffffffu, 0x7fffffffu - 5000, 0x80000000u - 10000}) {
        set_counter(counter);
        network.events = {data("A\n\nabc"), peer_closes()};
        const WebOutcome outcome = run({});
        expect_timeout(outcome);
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_EQ(elapsed_ms(), 0);
    }
    EXPECT_TRUE(network.receives.empty());
    EXPECT_TRUE(network.waits.empty());
}

TEST_F(MillisecondCounter, TimesOutInTheBodyToo)
{
    set_counter(0x7fffffffu - 10000 - 300);
    network.events = {data("A\n"), silence(400), data("\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    expect_timeout(outcome);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(elapsed_ms(), 400);
}

TEST_F(MillisecondCounter, MayStandAtItsLargestValueAsADeadline)
{
    set_counter(0x7fffffffu - 10000);
    network.events = {data("A\n\nabc"), peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
}

TEST_F(MillisecondCounter, MayPassZero)
{
    for (const std::uint32_t counter : {0xffffffffu, 0xffffffffu - 5000, 0x80000000u, 0u}) {
        set_counter(counter);
        network.events = {data("A\n"), silence(9990), data("\nabc"), peer_closes()};
        EXPECT_EQ(run({}).body, "abc");
        set_counter(counter);
        network.events = {data("A\n")};
        expect_timeout(run({}));
        EXPECT_EQ(elapsed_ms(), 10000);
    }
}

TEST_F(MillisecondCounter, SetAnHourForwardTimesOut)
{
    network.events = {data("A"), silence(1050), clock_step(3600000), silence(9000), data("\n\n")};
    expect_timeout(run({}));
    EXPECT_EQ(elapsed_ms(), 1100 + 3600000);
}

TEST_F(MillisecondCounter, SetAnHourBackKeepsTheTransactionWaiting)
{
    network.events = {data("A"),        silence(1050),   clock_step(-3600000),
                      silence(3600000), data("\n\nabc"), peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
}
