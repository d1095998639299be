/// \file
/// The pieces in which a request is sent, and sends that are cut short, interrupted or refused.
/// Tests web/send_request.cpp and web/socket_sends_linux.cpp.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <utility>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

/// Every transaction of these tests gets this short reply, unless the test says otherwise.
class TransactionSends : public FakeNetworkTest {
protected:
    TransactionSends()
    {
        prepare();
    }

    /// Forgets what was sent, and has the reply ready once more.
    static void prepare()
    {
        network.events = {data("HTTP/1.0 200 OK\r\n\r\nbody"), peer_closes()};
        network.sent.clear();
        network.sends.clear();
        network.shutdowns.clear();
    }

    static std::vector<std::string> pieces()
    {
        std::vector<std::string> bytes;
        for (const FakeNetwork::Send &send : network.sends) {
            bytes.push_back(send.bytes);
        }
        return bytes;
    }
};

/// A request with every part that one can have.
WebCall full_post()
{
    WebCall call;
    call.host = "web1.test";
    call.target = "/a?b=c";
    call.method = "POST";
    call.extra_headers = "X-One: 1\r\nX-Two: 2";
    call.body = "all of its bytes";
    call.user = "Aladdin";
    call.password = "open sesame";
    return call;
}

} // namespace

TEST_F(TransactionSends, SendsEveryTextByItself)
{
    run(full_post());
    const std::vector<std::string> expected = {
        "POST ",
        "/a?b=c",
        " HTTP/1.0\r\n",
        "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n",
        "Accept-Language: en-us\r\n",
        "User-Agent: Morvane_Auto1\r\n",
        referer_line(),
        "X-One: 1\r\nX-Two: 2",
        "\r\n",
        "Host: ",
        "web1.test",
        "\r\n",
        "Authorization: Basic ",
        "QWxhZGRpbjpvcGVuIHNlc2FtZQ==",
        "\r\n",
        "\r\n",
        "all of its bytes",
    };
    EXPECT_EQ(pieces(), expected);
    EXPECT_TRUE(network.shutdowns.empty());
}

TEST_F(TransactionSends, LeavesTheTextsOutThatThereAreNot)
{
    for (const char *method : {"GET", "POST"}) {
        prepare();
        WebCall call;
        call.method = method;
        run(call);
        const std::vector<std::string> expected = {
            std::string(method) + " ",
            "/",
            " HTTP/1.0\r\n",
            "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n",
            "Accept-Language: en-us\r\n",
            "User-Agent: Morvane_Auto1\r\n",
            referer_line(),
            "Host: ",
            "127.0.0.1",
            "\r\n",
            "\r\n",
        };
        EXPECT_EQ(pieces(), expected);
        EXPECT_TRUE(network.shutdowns.empty());
    }
}

#ifdef __linux__ // elsewhere the socket itself is told so
TEST_F(TransactionSends, AsksForNoSignalAndSaysWhichPieceIsTheLast)
{
    WebCall empty_post = full_post();
    empty_post.body = {};
    WebCall get = full_post(); // whose body is not sent
    get.method = "GET";
    for (const WebCall &call : {full_post(), empty_post, get, WebCall()}) {
        for (const std::size_t at_most : {SIZE_MAX, std::size_t(1)}) {
            prepare();
            network.send_at_most = at_most;
            run(call);
            const bool posts_body = std::string(call.method) == "POST" && !call.body.empty();
            const std::string last = posts_body ? std::string(call.body) : "\r\n";
            // A last piece of several sends says so in each of them.
            const std::size_t last_sends = at_most == 1 ? last.size() : 1;
            ASSERT_GT(network.sends.size(), last_sends);
            std::size_t sends_left = network.sends.size();
            for (const FakeNetwork::Send &send : network.sends) {
                EXPECT_EQ(send.flags & MSG_NOSIGNAL, MSG_NOSIGNAL) << send.bytes;
                EXPECT_EQ(send.flags & MSG_MORE, sends_left > last_sends ? MSG_MORE : 0)
                    << send.bytes << ", " << sends_left << " left";
                --sends_left;
            }
        }
    }
}
#endif

TEST_F(TransactionSends, NeverCompletesARequestThatLostAPiece)
{
    for (const std::size_t at_most : {SIZE_MAX, std::size_t(7)}) {
        network.send_at_most = at_most;
        network.lost_send = SIZE_MAX;
        prepare();
        run(full_post());
        const std::string whole = network.sent;
        const std::size_t count = network.sends.size();
        ASSERT_GE(count, 17u);
        for (std::size_t lost = 0; lost < count; ++lost) {
            SCOPED_TRACE(lost);
            prepare();
            network.lost_send = lost;
            const WebOutcome outcome = run(full_post());
            ASSERT_FALSE(network.shutdowns.empty());
            EXPECT_EQ(network.shutdowns[0].how, SHUT_WR);
            EXPECT_EQ(network.shutdowns[0].sends_before, lost + 1) << "not at once";
            EXPECT_LT(network.sent.size(), whole.size());
            EXPECT_EQ(network.sent, whole.substr(0, network.sent.size()));
            EXPECT_EQ(outcome.result, 0);
            EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\n\r");
            EXPECT_EQ(outcome.body, "body");
            EXPECT_EQ(outcome.error, "earlier");
        }
    }
}

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

TEST_F(TransactionSends, GivesThePeerAnotherTenSecondsForWhatIsLeft)
{
    network.send_at_most = 3;
    network.send_interruptions = 2;
    network.send_interruption_ms = 4500;
    network.events = {data("A\r\n\r\nb"), peer_closes()};
    WebCall call;
    call.method = "POST";
    call.body = "all of its bytes";
    EXPECT_EQ(run(call).result, 0);
    EXPECT_EQ(network.sent,
              request_text("POST / HTTP/1.0", "127.0.0.1", "", "", "all of its bytes"));
}

TEST_F(TransactionSends, DoesNotCareForTheResultsOfSend)
{
    for (const int error_number : {EPIPE, ECONNRESET, ENOBUFS}) {
        network.send_error = error_number;
        network.events = {data("A\r\n\r\nb"), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "A\r\n\r");
        EXPECT_EQ(outcome.body, "b");
        EXPECT_EQ(outcome.error, "earlier");
    }
}

TEST_F(TransactionSends, ReportTheirErrorIfNothingIsReceived)
{
    for (const int error_number : {EPIPE, ECONNRESET, ENOBUFS}) {
        network.send_error = error_number;
        network.events = {peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "");
        EXPECT_EQ(outcome.body, "");
        EXPECT_EQ(outcome.error, "Error receiving data from web site: " + code_text(error_number));
    }
}

TEST_F(TransactionSends, KeepTheFirstErrorOfThoseThatFail)
{
    network.lost_send = 3;
    network.events = {peer_closes()};
    EXPECT_EQ(run({}).error, "Error receiving data from web site: " + code_text(ENOBUFS));
}

TEST_F(TransactionSends, ThatFailAreNotReportedAfterAPartOfAHeader)
{
    network.send_error = EPIPE;
    network.events = {data("A"), peer_closes()};
    EXPECT_EQ(run({}).error, "earlier");
}

TEST_F(TransactionSends, GivesUpAPeerThatTakesNothingForTenSeconds)
{
    // EAGAIN is what the time limit of a blocking send gives; EINTR, a storm of signals.
    const std::pair<int, int> cases[] = {{EAGAIN, 100}, {EINTR, 250}};
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

// The request to cancel waits for the first moment at which nothing is there.
TEST_F(TransactionSends, AreNotCancelledWhenThePeerIsGone)
{
    for (const int error_number : {EPIPE, ECONNRESET, ENOBUFS}) {
        prepare();
        network.send_error = error_number;
        network.send_error_ms = 0;
        web_cancel_requested = 1;
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\n\r");
        EXPECT_EQ(outcome.body, "body");
        EXPECT_EQ(outcome.error, "earlier");
        EXPECT_EQ(web_cancel_requested, 1);
    }
}

TEST_F(TransactionSends, ThatFailAreFollowedByAWaitThatCanBeCancelled)
{
    network.send_error = EPIPE;
    network.send_error_ms = 0;
    network.events.push_front(silence(150));
    web_cancel_requested = 1;
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
    EXPECT_EQ(elapsed_ms(), 100);
}
