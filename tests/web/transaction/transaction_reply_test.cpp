/// \file
/// How the bytes of a reply become the header text and the body text.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <deque>
#include <string>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

using ReplyHeader = FakeNetworkTest;
using ReplyBody = FakeNetworkTest;

std::string receive_failure(int error_number)
{
    return "Error receiving data from web site: " + code_text(error_number);
}

/// The body text of a reply whose body arrives in these pieces.
std::string body_of(std::deque<NetworkEvent> pieces)
{
    network.events = std::move(pieces);
    network.events.push_front(data("\n\n"));
    network.events.push_back(peer_closes());
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "\n");
    return outcome.body.value_or("(none)");
}

std::string with_nul_at(std::size_t place, std::size_t size)
{
    std::string text(size, 'x');
    text[place] = '\0';
    return text;
}

} // namespace

TEST_F(ReplyHeader, EndsAtTheFirstLineWithoutContent)
{
    const struct {
        const char *reply;
        const char *header;
        const char *body;
    } cases[] = {
        {"HTTP/1.0 200 OK\r\nA: b\r\n\r\nabc", "HTTP/1.0 200 OK\r\nA: b\r\n\r", "abc"},
        {"A\n\nabc", "A\n", "abc"},
        {"A\nB\n\n\nabc", "A\nB\n", "\nabc"},
        {"A\n\r\nabc", "A\n\r", "abc"},
        {"A\r\n\nabc", "A\r\n", "abc"},
        {"A\r\n\r\r\r\nabc", "A\r\n\r\r\r", "abc"},
        {"A\r\r\n\r\nabc", "A\r\r\n\r", "abc"},
        {"A\rB\r\n\r\nabc", "A\rB\r\n\r", "abc"},
        {"A\r\n \r\n\r\nabc", "A\r\n \r\n\r", "abc"},
        {"A\r\n\r\n\r\n\r\n", "A\r\n\r", "\r\n\r\n"},
        {"A\r\n\r\n", "A\r\n\r", ""},
        {"A\x80\xff\r\n\r\nabc", "A\x80\xff\r\n\r", "abc"},
    };
    for (const auto &row : cases) {
        network.events = {data(row.reply), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, row.header);
        EXPECT_EQ(outcome.body, row.body);
    }
}

TEST_F(ReplyHeader, OfTwoLineFeedsIsATextOfOne)
{
    network.events = {data("\n\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.header, "\n");
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(ReplyHeader, MayBeginWithALineFeed)
{
    network.events = {data("\nA\n\nabc"), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.header, "\nA\n");
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(ReplyHeader, EndsAtALineFeedBehindACarriageReturn)
{
    for (const char *header : {"\r", "\r\r", "\n\r"}) {
        network.events = {data(header + std::string("\nabc\n\n")), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.header, header);
        EXPECT_EQ(outcome.body, "abc\n\n");
    }
}

TEST_F(ReplyHeader, CountsANulAsContentAndKeepsIt)
{
    const std::string text("A\r\n\0\r\nB\r\n\r", 10);
    network.events = {data(text + "\nabc"), peer_closes()};
    char *header = nullptr;
    char *body = nullptr;
    ASSERT_EQ(web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body, nullptr,
                              0, nullptr, nullptr),
              0);
    EXPECT_EQ(std::string(header, text.size() + 1), text + '\0');
    EXPECT_STREQ(body, "abc");
    std::free(header);
    std::free(body);
}

TEST_F(ReplyHeader, IsTheSameHoweverItsBytesArrive)
{
    for (const char byte : std::string("HTTP/1.0 200 OK\r\nA: b\r\n\r\nabc")) {
        network.events.push_back(data({byte}));
        network.events.push_back(silence(250));
    }
    network.events.push_back(peer_closes());
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\nA: b\r\n\r");
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(ReplyHeader, EndsWhereThePeerCloses)
{
    for (const char *part : {"", "H", "HTTP/1.0 200 OK", "HTTP/1.0 200 OK\r", "HTTP/1.0 200 OK\r\n",
                             "HTTP/1.0 200 OK\r\nA", "A\r\n\r", "\n", "\r"}) {
        network.events.clear();
        if (*part != '\0') {
            network.events.push_back(data(part));
        }
        network.events.push_back(peer_closes());
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, part);
        EXPECT_EQ(outcome.body, "");
        EXPECT_EQ(outcome.error, "earlier");
    }
}

TEST_F(ReplyHeader, IsFinishedByAReceiveErrorAndTheBodyFollows)
{
    network.events = {data("HTTP/1.0 200 OK\r\nA: b"), receive_error(EIO), data("rest\n\n"),
                      peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\nA: b");
    EXPECT_EQ(outcome.body, "rest\n\n");
    EXPECT_EQ(outcome.error, receive_failure(EIO));
}

TEST_F(ReplyHeader, IsEmptyWhenTheFirstReceiveFails)
{
    network.events = {receive_error(ECONNRESET), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "");
    EXPECT_EQ(outcome.body, "");
    EXPECT_EQ(outcome.error, receive_failure(ECONNRESET));
}

TEST_F(ReplyHeader, ReportsTheBodysErrorWhenBothFail)
{
    network.events = {data("A"), receive_error(ECONNRESET), receive_error(ENOTCONN)};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.header, "A");
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, receive_failure(ENOTCONN));
}

TEST_F(ReplyHeader, RetriesAnInterruptedReceiveAtOnceWithoutWaiting)
{
    // No select comes between the failures and the byte, so a cancel request must go unseen.
    web_cancel_requested = 1;
    network.events = {data("A\n"),          receive_error(EAGAIN), receive_error(EINTR),
                      receive_error(EINTR), data("\nabc"),         peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_EQ(outcome.error, "earlier");
    EXPECT_EQ(web_cancel_requested, 1);
}

// As when signals keep coming faster than the byte.
TEST_F(ReplyHeader, GivesUpAReceiveThatIsInterruptedForTenSeconds)
{
    network.events = {data("A"),     receive_error(EINTR), clock_step(9999), receive_error(EAGAIN),
                      clock_step(1), receive_error(EINTR), data("\n\nabc")};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 1);
    EXPECT_FALSE(outcome.header.has_value());
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, "Timeout waiting for web site");
}

TEST_F(ReplyHeader, TakesAByteThatComesAtTheVeryEndOfTheInterruptions)
{
    network.events = {data("A"),        receive_error(EINTR),
                      clock_step(9999), receive_error(EAGAIN),
                      data("\n\nabc"),  peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(ReplyHeader, EndsWithTheFailureBehindAnInterruption)
{
    network.events = {data("A"), receive_error(EINTR), receive_error(EIO), peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "A");
    EXPECT_EQ(outcome.body, "");
    EXPECT_EQ(outcome.error, receive_failure(EIO));
}

TEST_F(ReplyBody, ArrivesInAnyPieces)
{
    EXPECT_EQ(body_of({}), "");
    EXPECT_EQ(body_of({data("abc")}), "abc");
    EXPECT_EQ(body_of({data("a"), data("b"), data("c")}), "abc");
    EXPECT_EQ(body_of({data("abc"), silence(9000), data("def"), silence(9000)}), "abcdef");
    const std::string large(100000, 'x');
    EXPECT_EQ(body_of({data(large), data("y"), data(large)}), large + "y" + large);
}

TEST_F(ReplyBody, KeepsLineEndsAndHighBytes)
{
    EXPECT_EQ(body_of({data("\r\n\n\r\x80\xff\x01%s%n")}), "\r\n\n\r\x80\xff\x01%s%n");
}

TEST_F(ReplyBody, IsReceivedInChunksOfUpTo1023Bytes)
{
    network.events = {data("\n\n"), data(std::string(5000, 'x')), peer_closes()};
    EXPECT_EQ(run({}).body->size(), 5000u);
    EXPECT_EQ(*std::max_element(network.receives.begin(), network.receives.end()), 1023u);
}

TEST_F(ReplyBody, LosesTheRestOfAChunkBehindANul)
{
    EXPECT_EQ(body_of({data(std::string("ab\0cd", 5)), data("ef")}), "abef");
    EXPECT_EQ(body_of({data(std::string("\0cd", 3)), data("ef")}), "ef");
    EXPECT_EQ(body_of({data(std::string("ab\0", 3)), data("ef")}), "abef");
    EXPECT_EQ(body_of({data(std::string("\0", 1)), data("ef")}), "ef");
    EXPECT_EQ(body_of({data(std::string("\0", 1))}), "");
    EXPECT_EQ(body_of({data(std::string("a\0b\0c", 5)), data(std::string("d\0e", 3))}), "ad");
}

TEST_F(ReplyBody, LosesNothingOfTheChunksAroundAChunkWithANul)
{
    const std::string whole(1023, 'x');
    EXPECT_EQ(body_of({data(with_nul_at(0, 2046))}), whole);
    EXPECT_EQ(body_of({data(with_nul_at(1021, 2046))}), whole.substr(2) + whole);
    EXPECT_EQ(body_of({data(with_nul_at(1022, 2046))}), whole.substr(1) + whole);
    EXPECT_EQ(body_of({data(with_nul_at(1023, 2046))}), whole);
    EXPECT_EQ(body_of({data(with_nul_at(1024, 2046))}), whole + "x");
    EXPECT_EQ(body_of({data(with_nul_at(1023, 3069))}), whole + whole);
}

TEST_F(ReplyBody, IsCompleteWhenAReceiveIsInterrupted)
{
    for (const int error_number : {EAGAIN, EINTR}) {
        network.events = {data("A\n\n"), data("abc"), receive_error(error_number), data("never")};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.header, "A\n");
        EXPECT_EQ(outcome.body, "abc");
        EXPECT_EQ(outcome.error, "earlier");
    }
}

TEST_F(ReplyBody, FailsWithTheReceive)
{
    for (const int error_number : {ECONNRESET, EIO, ENOMEM, ENOTCONN}) {
        network.events = {data("A\n\n"), data("abc"), receive_error(error_number), peer_closes()};
        const WebOutcome outcome = run({});
        EXPECT_EQ(outcome.result, -1);
        EXPECT_EQ(outcome.header, "A\n");
        EXPECT_FALSE(outcome.body.has_value());
        EXPECT_EQ(outcome.error, receive_failure(error_number));
    }
}

TEST_F(ReplyBody, IsNotInterpreted)
{
    network.events = {data("HTTP/1.1 404 No\r\nContent-Length: 1\r\n"
                           "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n"),
                      peer_closes()};
    const WebOutcome outcome = run({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, "3\r\nabc\r\n0\r\n\r\n");
}
