// Real connections whose sends take one byte at a time, and whose calls are interrupted before each
// that works.
#include <cerrno>
#include <gtest/gtest.h>
#include <string>

#include "tests/harness/failing_calls.h"
#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

const std::string reply_header = "HTTP/1.0 200 OK\r\n\r\n";

/// 256 KiB in which every place can be told from its neighbours.
std::string large_body()
{
    std::string text;
    while (text.size() < 262144) {
        text += std::to_string(text.size()) + " ";
    }
    return text;
}

class ShortSends : public testing::Test {
protected:
    ShortSends()
        : body_(large_body()),
          server_({collect_request(body_.size()), send_bytes(reply_header + "all"), half_close(),
                   collect_to_end()})
    {
        call_.method = "POST";
        call_.body = body_;
        call_.port = server_.port();
        failing_calls = {};
        web_cancel_requested = 0;
    }
    ~ShortSends() override
    {
        failing_calls = {};
    }

    WebOutcome run_watched(const Failure &failure)
    {
        const WatchedCalls watched(failure);
        return run(call_);
    }
    void expect_the_whole_request()
    {
        const std::vector<std::string> whole = {
            request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body_)};
        EXPECT_EQ(server_.requests(), whole);
    }

    std::string body_;
    ScriptedServer server_;
    WebCall call_;
};

} // namespace

TEST_F(ShortSends, DeliverALargeBodyByteByByteThroughInterruptions)
{
    const std::size_t descriptors = open_descriptor_count();
    failing_calls.send_at_most = 1;
    const WebOutcome outcome = run_watched({Failure::EveryOther, Call::Send, EINTR});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "HTTP/1.0 200 OK\r\n\r");
    EXPECT_EQ(outcome.body, "all");
    EXPECT_TRUE(server_.wait_until_served());
    EXPECT_EQ(open_descriptor_count(), descriptors);
    expect_the_whole_request();
    EXPECT_GT(calls_seen().bytes_taken, 262144u);
    EXPECT_GE(calls_seen().of(Call::Send), 2 * static_cast<int>(calls_seen().bytes_taken));
}

TEST_F(ShortSends, DeliverALargeBodyWhoseReplyIsWaitedForThroughInterruptions)
{
    const WebOutcome outcome = run_watched({Failure::EveryOther, Call::Select, EINTR});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.body, "all");
    EXPECT_GT(calls_seen().failed, static_cast<int>(reply_header.size()));
    expect_the_whole_request();
}
