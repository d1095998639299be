/// \file
/// Transactions with a server on the loopback interface: whole exchanges, servers that pause and
/// trickle, and ports that refuse.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

/// No descriptor may be left open behind a test, nor may anything of another test be left over.
class WebClient : public testing::Test {
protected:
    WebClient() : descriptors_(open_descriptor_count())
    {
        set_web_idle_callback(nullptr, nullptr);
        set_web_error("earlier");
        web_cancel_requested = 0;
    }
    ~WebClient() override
    {
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

std::string bytes_without_nul(std::size_t size)
{
    std::mt19937 random(5);
    std::string bytes(size, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(1 + random() % 255);
    }
    return bytes;
}

const std::string short_reply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nabc";
const std::string short_header = "HTTP/1.0 200 OK\r\nA: b\r\n\r";

} // namespace

TEST_F(WebClient, GetsAPage)
{
    ScriptedServer server({collect_request(), send_bytes(short_reply)});
    const WebOutcome outcome = get_from(server);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, short_header);
    EXPECT_EQ(outcome.body, "abc");
    EXPECT_EQ(outcome.error, "earlier");
    EXPECT_EQ(server.requests(),
              std::vector<std::string>{request_text("GET / HTTP/1.0", "127.0.0.1")});
}

TEST_F(WebClient, PostsNulBytes)
{
    const std::string body("\0a\0\r\n\r\n\0", 8);
    ScriptedServer server({collect_request(body.size()), send_bytes(short_reply)});
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    EXPECT_EQ(run(call).result, 0);
    EXPECT_EQ(server.requests(),
              std::vector<std::string>{request_text("POST / HTTP/1.0", "127.0.0.1", "", "", body)});
}

TEST_F(WebClient, PostsFiveMegabytes)
{
    const std::string body = bytes_without_nul(5000000);
    ScriptedServer server({collect_request(body.size()), send_bytes(short_reply)});
    WebCall call;
    call.port = server.port();
    call.method = "POST";
    call.body = body;
    EXPECT_EQ(run(call).body, "abc");
    EXPECT_TRUE(server.requests() == std::vector<std::string>{request_text(
                                         "POST / HTTP/1.0", "127.0.0.1", "", "", body)});
}

TEST_F(WebClient, SendsNothingBehindTheRequest)
{
    // The client has closed its side when the server comes to the end of what it can receive.
    ScriptedServer server(
        {collect_request(), send_bytes(short_reply), half_close(), collect_to_end()});
    get_from(server);
    ASSERT_TRUE(server.wait_until_served());
    EXPECT_EQ(server.requests(),
              std::vector<std::string>{request_text("GET / HTTP/1.0", "127.0.0.1")});
}

TEST_F(WebClient, SendsASmallRequestInOneSegment)
{
    WebCall call;
    call.method = "POST";
    call.extra_headers = "Content-Length: 3";
    call.user = "Aladdin";
    call.password = "open sesame";
    for (const std::string_view body : {std::string_view("q=1"), std::string_view()}) {
        call.body = body;
        // The system holds pieces back for 200 ms at most, so that a client that is kept off the
        // processor may take two segments now and then.
        int fewest = INT_MAX;
        for (int round = 0; round < 10 && fewest > 1; ++round) {
            int segments = 0;
            ScriptedServer server({collect_request(body.size()),
                                   [&segments](ScriptedConnection &connection) {
                                       segments = connection.data_segments();
                                       return true;
                                   },
                                   send_bytes(short_reply)});
            call.port = server.port();
            EXPECT_EQ(run(call).body, "abc");
            server.stop();
            if (segments < 0) {
                GTEST_SKIP() << "this system does not count segments";
            }
            fewest = std::min(fewest, segments);
        }
        EXPECT_EQ(fewest, 1) << "with a body of " << body.size() << " bytes";
    }
}

TEST_F(WebClient, RequestsThroughAProxy)
{
    ScriptedServer proxy({collect_request(3), send_bytes(short_reply)});
    WebCall call;
    call.method = "POST";
    call.proxy_host = "127.0.0.1";
    call.proxy_port = proxy.port();
    const WebOutcome outcome = run_request("http://web1.test:8080/cgi?a=1", call);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, short_header);
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(proxy.requests(),
              std::vector<std::string>{request_text(
                  "POST http://web1.test:8080/cgi?a=1 HTTP/1.0", "WEB1.TEST",
                  "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 3\r\n", "",
                  "q=1")});
}

TEST_F(WebClient, TakesANewConnectionForEveryTransaction)
{
    ScriptedServer server({collect_request(), send_bytes(short_reply)});
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(get_from(server).body, "abc");
    }
    EXPECT_EQ(server.connection_count(), 20u);
}

TEST_F(WebClient, GetsAReplyThatTrickles)
{
    ScriptedServer server({collect_request(), send_one_by_one(short_reply, 5)});
    const WebOutcome outcome = get_from(server);
    EXPECT_EQ(outcome.header, short_header);
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(WebClient, GetsAReplyWithPauses)
{
    ScriptedServer server({collect_request(), pause_for(250), send_bytes("HTTP/1.0 200 OK\r"),
                           pause_for(250), send_bytes("\nA: b\r\n\r"), pause_for(250),
                           send_bytes("\na"), pause_for(250), send_bytes("bc"), pause_for(250)});
    const WebOutcome outcome = get_from(server);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, short_header);
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(WebClient, GetsFiveMegabytes)
{
    const std::string body = bytes_without_nul(5000000);
    ScriptedServer server({collect_request(), send_bytes("A\r\n\r\n" + body)});
    const WebOutcome outcome = get_from(server);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.header, "A\r\n\r");
    EXPECT_TRUE(outcome.body == body);
}

TEST_F(WebClient, GetsAHeaderLineOf64Kilobytes)
{
    const std::string header = "HTTP/1.0 200 OK\r\nA: " + std::string(65536, 'b') + "\r\n\r";
    ScriptedServer server({collect_request(), send_bytes(header + "\nabc")});
    const WebOutcome outcome = get_from(server);
    EXPECT_TRUE(outcome.header == header);
    EXPECT_EQ(outcome.body, "abc");
}

TEST_F(WebClient, SaysThatAConnectionIsRefused)
{
    const RefusingPort refusing;
    WebCall call;
    call.port = refusing.port();
    const WebOutcome outcome = run(call);
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.error, "Can't connect to web server '127.0.0.1': " + code_text(ECONNREFUSED));
    EXPECT_FALSE(outcome.header.has_value());
}

TEST_F(WebClient, NamesTheServerWhenItsProxyRefuses)
{
    const RefusingPort refusing;
    WebCall call;
    call.host = "web1.test";
    call.proxy_host = "127.0.0.1";
    call.proxy_port = refusing.port();
    EXPECT_EQ(run(call).error,
              "Can't connect to web server 'web1.test': " + code_text(ECONNREFUSED));
}
