/// \file
/// Sends that are cut short, interrupted or refused.
#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

/// Every transaction of these tests gets this short reply, unless the test says otherwise.
class TransactionSends : public FakeNetworkTest {
protected:
    TransactionSends()
    {
        network.events = {data("HTTP/1.0 200 OK\r\n\r\nbody"), peer_closes()};
    }
};

} // namespace

TEST_F(TransactionSends, DeliversTheWholeRequestThroughShortSends)
{
    network.send_at_most = 1;
    WebCall call;
    call.method = "POST";
    call.body = "all of its bytes";
    run(call);
    EXPECT_EQ(network.sent,
              request_text("POST / HTTP/1.0", "127.0.0.1", "", "", "all of its bytes"));
}

TEST_F(TransactionSends, DeliversTheWholeRequestThroughInterruptedSends)
{
    network.send_at_most = 3;
    network.send_interruptions = 2;
    WebCall call;
    call.method = "POST";
    call.body = "all of its bytes";
    run(call);
    EXPECT_EQ(network.sent,
              request_text("POST / HTTP/1.0", "127.0.0.1", "", "", "all of its bytes"));
}

TEST_F(TransactionSends, DoesNotCareForTheResultsOfSend)
{
    for (const int error_number : {EPIPE, ECONNRESET, ENOBUFS, EAGAIN}) {
        network.send_error = error_number;
        network.events = {data("A\r\n\r\nb"), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "A\r\n\r");
        EXPECT_EQ(outcome.body, "b");
        EXPECT_EQ(outcome.error, "earlier");
    }
}

TEST_F(TransactionSends, GivesUpAPeerThatTakesNothingForTenSeconds)
{
    // EAGAIN is what the limit of a blocking send gives; EINTR, a storm of signals.
    const std::pair<int, int> cases[] = {{EAGAIN, 10000}, {EINTR, 250}};
    for (const auto &[error_number, ms_a_send] : cases) {
        network.send_error = error_number;
        network.send_error_ms = ms_a_send;
        network.events = {data("A\r\n\r\nb"), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_EQ(outcome.error, "Timeout waiting for web site");
    }
}

TEST_F(TransactionSends, IsCancelledWhileThePeerTakesNothing)
{
    network.send_error = EINTR;
    web_cancel_requested = 1;
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
}
