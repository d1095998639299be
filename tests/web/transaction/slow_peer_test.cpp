/// \file
/// Peers that take a request slowly, or stop taking it: how long they are waited for, and what the
/// callbacks see of it. The network and its clock are replaced.
/// Tests web/request_progress.cpp.
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

/// One call of the send callback.
struct Report {
    std::size_t sent;
    std::int64_t at_ms;
};

class SlowPeer : public FakeNetworkTest {
protected:
    SlowPeer()
    {
        network.keeps_records = false;
        network.send_buffer = 100000;
        set_web_send_callback(note, this);
    }
    ~SlowPeer() override
    {
        set_web_send_callback(nullptr, nullptr);
        set_web_idle_callback(nullptr, nullptr);
    }

    static void note(std::size_t sent, void *test)
    {
        static_cast<SlowPeer *>(test)->reports_.push_back({sent, elapsed_ms()});
    }

    /// Posts \p size bytes to a peer that takes \p per_ms bytes a millisecond.
    WebOutcome post(std::size_t size, std::int64_t per_ms, std::int64_t takes_for_ms = INT64_MAX)
    {
        network.taken_per_ms = per_ms;
        network.takes_for_ms = takes_for_ms;
        body_ = std::string(size, 'x');
        WebCall call;
        call.method = "POST";
        call.body = body_;
        return run(call);
    }

    bool whole_request_was_sent() const
    {
        return network.sent == request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body_);
    }

    static void expect_timeout(const WebOutcome &outcome, std::int64_t earliest_ms)
    {
        EXPECT_EQ(outcome.result, WEB_TIMED_OUT);
        EXPECT_EQ(outcome.error, "Timeout waiting for web site");
        EXPECT_FALSE(outcome.header.has_value());
        EXPECT_GE(elapsed_ms(), earliest_ms);
        EXPECT_LE(elapsed_ms(), earliest_ms + 200);
    }

    std::string body_;
    std::vector<Report> reports_;
};

const std::string reply = "A\r\n\r\nabc";

} // namespace

TEST_F(SlowPeer, GetsAPostOf20MillionBytesAt200AMillisecond)
{
    network.send_buffer = 4000000; // 20 s at this speed: more than the time for a first byte
    network.events = {silence(20050), data(reply), peer_closes()};
    const WebOutcome outcome = post(20000000, 200);
    EXPECT_EQ(outcome.result, WEB_DONE);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_TRUE(whole_request_was_sent());
    EXPECT_GE(elapsed_ms(), 100000);
}

TEST_F(SlowPeer, GetsAPostAtFiveBytesAMillisecond)
{
    // A third of the buffer, which a send waits for, takes the peer longer than 10 s.
    network.send_buffer = 180000;
    network.events = {silence(36050), data(reply), peer_closes()};
    EXPECT_EQ(post(1000000, 5).body, "abc");
    EXPECT_TRUE(whole_request_was_sent());
}

TEST_F(SlowPeer, IsGivenUpTenSecondsAfterItStopsWhileItIsSentTo)
{
    expect_timeout(post(1000000, 5, 25000), 35000);
    EXPECT_FALSE(whole_request_was_sent());
}

TEST_F(SlowPeer, IsGivenUpTenSecondsAfterItStopsWithinTheBuffer)
{
    expect_timeout(post(90000, 5, 3000), 13000);
    EXPECT_TRUE(whole_request_was_sent());
}

TEST_F(SlowPeer, IsGivenUpTenSecondsAfterItTakesTheLastByte)
{
    // 50,000 bytes and less than 500 of a header.
    post(50000, 5);
    EXPECT_GE(elapsed_ms(), 20000);
    EXPECT_LE(elapsed_ms(), 20300);
}

TEST_F(SlowPeer, IsGivenUpAfterTenSecondsIfItNeverTakesAnything)
{
    expect_timeout(post(1000000, 0), 10000);
    EXPECT_EQ(network.sent.size(), 100000u);
}

TEST_F(SlowPeer, IsGivenUpAfterTenSecondsIfItTookAllAtOnce)
{
    post(50000, -1);
    EXPECT_EQ(elapsed_ms(), 10000);
}

TEST_F(SlowPeer, HasTenSecondsForTheFirstByteIfTheSystemCannotTell)
{
    network.tells_unsent = false;
    post(90000, 5);
    EXPECT_EQ(elapsed_ms(), 10000);
    EXPECT_TRUE(reports_.empty());
}

TEST_F(SlowPeer, IsJudgedByAcceptedBytesIfTheSystemCannotTell)
{
    network.tells_unsent = false;
    network.send_buffer = 90000;
    network.events = {silence(9000), data(reply), peer_closes()};
    EXPECT_EQ(post(300000, 5).body, "abc"); // a third of the buffer takes 6 s
    EXPECT_GT(reports_.size(), 2u);
    for (std::size_t i = 1; i < reports_.size(); ++i) {
        EXPECT_GE(reports_[i].sent, reports_[i - 1].sent);
    }
    EXPECT_GT(reports_[0].sent, 80000u);
}

TEST_F(SlowPeer, MakesTheHeadersOtherBytesNoLater)
{
    network.events = {data("A"), silence(20000)};
    const WebOutcome outcome = post(90000, 5);
    EXPECT_EQ(outcome.result, WEB_TIMED_OUT);
    EXPECT_EQ(elapsed_ms(), 10000);
}

TEST_F(SlowPeer, IsNotCheckedWhenItAnswersAtOnce)
{
    network.events = {data(reply), peer_closes()};
    EXPECT_EQ(post(1000, 0).result, WEB_DONE);
    network.events = {silence(99), data(reply), peer_closes()};
    EXPECT_EQ(post(1000, 0).result, WEB_DONE);
    EXPECT_EQ(network.unsent_queries, 0);
    EXPECT_TRUE(reports_.empty());
}

TEST_F(SlowPeer, IsNotCheckedAnyMoreOnceItHasTakenAll)
{
    post(1000, -1);
    EXPECT_EQ(network.unsent_queries, 1);
    EXPECT_TRUE(reports_.empty());
}

TEST_F(SlowPeer, IsReportedEvery100MillisecondsUntilItHasAll)
{
    network.events = {silence(25000), data(reply), peer_closes()};
    EXPECT_EQ(post(200000, 5).result, WEB_DONE);
    ASSERT_GT(reports_.size(), 100u);
    EXPECT_LT(reports_[0].sent, 1001u); // at 200 ms, less the header
    EXPECT_EQ(reports_.back().sent, 200000u);
    for (std::size_t i = 1; i < reports_.size(); ++i) {
        EXPECT_GE(reports_[i].at_ms - reports_[i - 1].at_ms, 100);
        EXPECT_GE(reports_[i].sent, reports_[i - 1].sent);
    }
}

TEST_F(SlowPeer, IsReportedAsHavingNoneOfTheBodyWhileItTakesTheHeader)
{
    network.events = {silence(301), data(reply), peer_closes()};
    EXPECT_EQ(post(1000, 0).result, WEB_DONE);
    ASSERT_EQ(reports_.size(), 2u); // the first of three checks gives the number to begin with
    EXPECT_EQ(reports_[0].sent, 0u);
    EXPECT_EQ(reports_[0].at_ms, 200);
    EXPECT_EQ(reports_[1].sent, 0u);
}

TEST_F(SlowPeer, IsReportedAtMostEvery100MillisecondsWhileItIsFast)
{
    network.send_buffer = 30000;
    network.events = {silence(200), data(reply), peer_closes()};
    EXPECT_EQ(post(20000000, 5000).result, WEB_DONE);
    ASSERT_GT(reports_.size(), 5u);
    for (std::size_t i = 1; i < reports_.size(); ++i) {
        EXPECT_GE(reports_[i].at_ms - reports_[i - 1].at_ms, 100);
    }
}

TEST_F(SlowPeer, IsNotReportedWithoutCallback)
{
    set_web_send_callback(nullptr, this);
    expect_timeout(post(1000000, 0), 10000);
    EXPECT_TRUE(reports_.empty());
}

// The base class checks that no descriptor is left open.
TEST_F(SlowPeer, ClosesTheConnectionWhenACallbackThrows)
{
    set_web_send_callback([](std::size_t, void *) { throw std::runtime_error("enough"); }, nullptr);
    EXPECT_THROW(post(1000000, 5), std::runtime_error);
    EXPECT_THROW(post(1000, 0), std::runtime_error);
    set_web_send_callback(nullptr, nullptr);
    set_web_idle_callback([](void *) { throw std::runtime_error("enough"); }, nullptr);
    EXPECT_THROW(post(1000000, 0), std::runtime_error);
}

TEST_F(SlowPeer, LetsTheIdleCallbackRunTenTimesASecond)
{
    static int calls;
    calls = 0;
    set_web_idle_callback([](void *) { ++calls; }, nullptr);
    post(1000000, 0);
    EXPECT_GE(calls, 99);
    EXPECT_LE(calls, 101);
}

TEST_F(SlowPeer, CanBeCancelledWhileItIsSentTo)
{
    static int calls;
    calls = 0;
    set_web_idle_callback(
        [](void *) {
            if (++calls == 3) {
                web_cancel_requested = 1;
            }
        },
        nullptr);
    const WebOutcome outcome = post(1000000, 5);
    EXPECT_EQ(outcome.result, WEB_CANCELLED);
    EXPECT_EQ(outcome.error, "User canceled web transaction");
    EXPECT_EQ(web_cancel_requested, 0);
    EXPECT_LE(elapsed_ms(), 500);
}
