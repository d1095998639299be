/// \file
/// The ten-second time-outs, in real time.
#include <chrono>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Runs a transaction with a server of this script; \p seconds receives how long it took.
WebOutcome timed_get(ServerScript script, double &seconds, bool accepting = true)
{
    web_cancel_requested = 0;
    const std::size_t descriptors = open_descriptor_count();
    WebOutcome outcome;
    {
        ScriptedServer server(std::move(script), accepting);
        WebCall call;
        call.port = server.port();
        const Clock::time_point start = Clock::now();
        outcome = run(call);
        seconds = std::chrono::duration<double>(Clock::now() - start).count();
    }
    EXPECT_EQ(open_descriptor_count(), descriptors);
    return outcome;
}

/// Time-outs may come late on a busy machine, but never early.
void expect_timeout(const WebOutcome &outcome, double seconds, double expected)
{
    EXPECT_EQ(outcome.result, 1);
    EXPECT_FALSE(outcome.body.has_value());
    EXPECT_EQ(outcome.error, "Timeout waiting for web site");
    EXPECT_GE(seconds, expected - 0.05);
    EXPECT_LT(seconds, expected + 4);
}

constexpr int small_buffer = 4096;

std::string whole_request(const std::string &body)
{
    return request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body);
}

/// Runs a POST with a server of this script and receive buffer; what it gets is part of the
/// request's beginning.
WebOutcome timed_post(const std::string &body, ServerScript script, int receive_buffer,
                      double &seconds)
{
    web_cancel_requested = 0;
    ScriptedServer server(std::move(script), true, receive_buffer);
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    const Clock::time_point start = Clock::now();
    WebOutcome outcome = run(call);
    seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const std::string received = server.requests().at(0);
    EXPECT_EQ(received, whole_request(body).substr(0, received.size()));
    if (outcome.result == WEB_DONE) {
        EXPECT_EQ(received.size(), whole_request(body).size());
    }
    return outcome;
}

} // namespace

TEST(WebTimeout, OfASilentServer)
{
    double seconds;
    const WebOutcome outcome = timed_get({collect_request(), stay_silent()}, seconds);
    expect_timeout(outcome, seconds, 10);
    EXPECT_FALSE(outcome.header.has_value());
}

TEST(WebTimeout, OfAServerThatNeverAccepts)
{
    double seconds;
    const WebOutcome outcome = timed_get({}, seconds, false);
    expect_timeout(outcome, seconds, 10);
    EXPECT_FALSE(outcome.header.has_value());
}

TEST(WebTimeout, IsMeasuredFromTheLastByteOfTheHeader)
{
    double seconds;
    const WebOutcome outcome =
        timed_get({collect_request(), pause_for(1000), send_bytes("H"), pause_for(1000),
                   send_bytes("TTP/1.0\r\n"), stay_silent()},
                  seconds);
    expect_timeout(outcome, seconds, 12);
    EXPECT_FALSE(outcome.header.has_value());
}

TEST(WebTimeout, IsMeasuredFromTheLastByteOfTheBody)
{
    double seconds;
    const WebOutcome outcome =
        timed_get({collect_request(), send_bytes("A\n\n"), pause_for(1000), send_bytes("abc"),
                   pause_for(1000), send_bytes("def"), stay_silent()},
                  seconds);
    expect_timeout(outcome, seconds, 12);
    EXPECT_EQ(outcome.header, "A\n");
}

TEST(WebTimeout, DoesNotEndAReplyThatKeepsComing)
{
    double seconds;
    const WebOutcome outcome =
        timed_get({collect_request(), pause_for(4000), send_bytes("A\n"), pause_for(4000),
                   send_bytes("\n"), pause_for(4000), send_bytes("abc")},
                  seconds);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(outcome.body, "abc");
}

TEST(WebTimeout, DoesNotCutAPostThatThePeerTakesAfterNineSeconds)
{
    web_cancel_requested = 0;
    const std::string body(20000000, 'x');
    ScriptedServer server(
        {collect_request(), pause_for(9000), collect_request(body.size()), send_bytes("A\n\nabc")});
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    const WebOutcome outcome = run(call);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_EQ(server.requests().at(0).size(),
              request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body).size());
}

// At this speed the buffers of both systems hold more than the time for a first byte.
TEST(WebTimeout, DoesNotCutAPostOf20MillionBytesAt200000ASecond)
{
    const std::string body(20000000, 'x');
    const std::size_t size = whole_request(body).size();
    double seconds;
    const WebOutcome outcome =
        timed_post(body, {collect_slowly(size, 20000, 100), send_bytes("A\n\nabc")}, 0, seconds);
    EXPECT_EQ(outcome.result, WEB_DONE);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_GE(seconds, 99);
}

TEST(WebTimeout, DoesNotCutAPostOf200000BytesAt5000ASecond)
{
    const std::string body(200000, 'x');
    const std::size_t size = whole_request(body).size();
    double seconds;
    const WebOutcome outcome = timed_post(
        body, {collect_slowly(size, 500, 100), send_bytes("A\n\nabc")}, small_buffer, seconds);
    EXPECT_EQ(outcome.result, WEB_DONE);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_GE(seconds, 39);
}

TEST(WebTimeout, OfAPeerThatStopsTakingASlowPost)
{
    for (const std::size_t size : {std::size_t(40000), std::size_t(20000000)}) {
        const std::string body(size, 'x');
        double seconds;
        const WebOutcome outcome = timed_post(
            body, {collect_slowly(15000, 500, 100), stay_silent()}, small_buffer, seconds);
        expect_timeout(outcome, seconds, 13); // the peer's system takes a little more at once
        EXPECT_FALSE(outcome.header.has_value());
    }
}

TEST(WebTimeout, OfASilentServerThatTookALargePost)
{
    const std::string body(1000000, 'x');
    double seconds;
    const WebOutcome outcome =
        timed_post(body, {collect_request(body.size()), stay_silent()}, 0, seconds);
    expect_timeout(outcome, seconds, 10);
}

TEST(WebTimeout, OfAPeerThatTakesNothingOfALargePost)
{
    double seconds;
    const WebOutcome outcome =
        timed_post(std::string(20000000, 'x'), {stay_silent()}, small_buffer, seconds);
    expect_timeout(outcome, seconds, 10);
    EXPECT_FALSE(outcome.header.has_value());
}

// Deliberate: within the body a cancel request waits for ten silent seconds.
TEST(WebTimeout, IsReplacedByACancelRequestInTheBody)
{
    const ScriptStep request_cancel = [](ScriptedConnection &) {
        web_cancel_requested = 1;
        return true;
    };
    double seconds;
    const WebOutcome outcome = timed_get(
        {collect_request(), send_bytes("A\n\nabc"), pause_for(50), request_cancel, stay_silent()},
        seconds);
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.header, "A\n");
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
    EXPECT_GE(seconds, 10);
    EXPECT_LT(seconds, 14);
}
