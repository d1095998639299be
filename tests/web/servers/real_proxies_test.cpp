#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <string>

#include "tests/harness/real_servers.h"
#include "tests/harness/scripted_server.h"
#include "tests/web/servers/form_call.h"
#include "web/web.h"

namespace {

/// The arguments of a request that goes through a proxy on this machine.
WebCall through(std::uint16_t proxy_port)
{
    WebCall call;
    call.proxy_host = "127.0.0.1";
    call.proxy_port = proxy_port;
    return call;
}

/// What an update query fills.
struct UpdateAnswer {
    int result;
    std::string message;
    std::string version;
    std::string url;
    std::string button;
    std::string error;
};

UpdateAnswer update_through(std::uint16_t proxy_port, float version)
{
    std::array<char, 256> message = {};
    std::array<char, 256> newest = {};
    std::array<char, 256> url = {};
    std::array<char, 256> button = {};
    const int result =
        query_product_update("Müller & Co", "Line", version, "five one", "Mac OS X", "10.4.11",
                             "machine", "i386", 256, message.data(), newest.data(), url.data(),
                             button.data(), "127.0.0.1", proxy_port, nullptr, nullptr);
    return {result, message.data(), newest.data(), url.data(), button.data(), web_last_error()};
}

template <typename Proxy> class ThroughAProxy : public testing::Test {
};
using Proxies = testing::Types<TinyProxy, SquidProxy>;
TYPED_TEST_SUITE(ThroughAProxy, Proxies, ProxyNames);

TYPED_TEST(ThroughAProxy, AFileArrives)
{
    const NginxServer nginx;
    nginx.add_file("hello.txt", "Hello\n");
    const TypeParam proxy;
    const WebOutcome outcome = get_page(nginx.url("/hello.txt"), through(proxy.port()));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(status_complaint(outcome), "");
    EXPECT_EQ(outcome.body, "Hello\n");
}

TYPED_TEST(ThroughAProxy, FiveMegabytesArriveWhole)
{
    std::string large;
    while (large.size() < 5'000'000) {
        large += std::to_string(large.size()) + "\n";
    }
    const NginxServer nginx;
    nginx.add_file("large.txt", large);
    const TypeParam proxy;
    const WebOutcome outcome = get_page(nginx.url("/large.txt"), through(proxy.port()));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_TRUE(outcome.body == large) << outcome.body.value_or("").size();
}

TYPED_TEST(ThroughAProxy, TheStatusOfTheWebServerArrives)
{
    const NginxServer nginx;
    const TypeParam proxy;
    const WebOutcome outcome = get_page(nginx.url("/nowhere.txt"), through(proxy.port()));
    EXPECT_EQ(status_complaint(outcome), "Bad HTTP status 404 from web site: Not Found");
}

TYPED_TEST(ThroughAProxy, AFormArrives)
{
    const PhpServer php;
    const TypeParam proxy;
    const WebOutcome outcome = post_form(
        php.url("/form"), {{"name", "Jürgen M."}, {"sum", "1+1=2 & more"}}, through(proxy.port()));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(status_complaint(outcome), "");
    EXPECT_EQ(outcome.body, "POST /form\nname=Jürgen M.\nsum=1+1=2 & more\n");
}

// Deliberate: the credentials are for the web server, though the program takes them from options
// for a proxy.
TYPED_TEST(ThroughAProxy, TheCredentialsReachTheWebServer)
{
    const PhpServer php(R"(<?php echo $_SERVER['PHP_AUTH_USER'], '/', $_SERVER['PHP_AUTH_PW'];)");
    const TypeParam proxy;
    WebCall call = through(proxy.port());
    call.user = "Aladdin";
    call.password = "open sesame";
    const WebOutcome outcome = post_form(php.url("/"), {{"a", "b"}}, call);
    EXPECT_EQ(status_complaint(outcome), "");
    EXPECT_EQ(outcome.body, "Aladdin/open sesame");
}

// Deliberate: as above; such a proxy cannot be used.
TYPED_TEST(ThroughAProxy, AProxyWithAPasswordOfItsOwnIsNotSatisfied)
{
    const NginxServer nginx;
    nginx.add_file("hello.txt", "Hello\n");
    const TypeParam proxy(ProxyRule::ask_for_password);
    WebCall call = through(proxy.port());
    call.user = "someone";
    call.password = "secret";
    const WebOutcome outcome = get_page(nginx.url("/hello.txt"), call);
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(status_complaint(outcome),
              "Bad HTTP status 407 from web site: Proxy Authentication Required");
}

TYPED_TEST(ThroughAProxy, TheRefusalOfAProxyIsSeen)
{
    const NginxServer nginx;
    nginx.add_file("hello.txt", "Hello\n");
    const TypeParam proxy(ProxyRule::refuse);
    const WebOutcome outcome = get_page(nginx.url("/hello.txt"), through(proxy.port()));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    // The reason behind the number is the proxy's own.
    const std::string header = outcome.header.value_or("");
    const std::string first_line = header.substr(0, header.find("\r\n"));
    const std::size_t status = first_line.find(" 403 ");
    ASSERT_NE(status, std::string::npos) << first_line;
    EXPECT_EQ(status_complaint(outcome),
              "Bad HTTP status 403 from web site: " + first_line.substr(status + 5));
}

TYPED_TEST(ThroughAProxy, AWebServerThatIsNotThereIsTheProxysFailure)
{
    const RefusingPort nobody;
    const TypeParam proxy;
    const WebOutcome outcome =
        get_page("http://127.0.0.1:" + std::to_string(nobody.port()) + "/", through(proxy.port()));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    const std::string complaint = status_complaint(outcome);
    EXPECT_EQ(complaint.rfind("Bad HTTP status 50", 0), 0U) << complaint;
}

TYPED_TEST(ThroughAProxy, AnUpdateQueryIsAnswered)
{
    const PhpServer php;
    const TypeParam proxy(ProxyRule::serve, php.port());
    const UpdateAnswer answer = update_through(proxy.port(), 5.1F);
    EXPECT_EQ(answer.result, 0) << answer.error;
    EXPECT_EQ(answer.message, "Müller & Co 5.2 is available; you have five one.\n");
    EXPECT_EQ(answer.version, "5.2");
    EXPECT_EQ(answer.url, "http://www.morvane.example/download.html");
    EXPECT_EQ(answer.button, "Download");
}

TYPED_TEST(ThroughAProxy, TheRefusalOfAProxyIsSeenByAnUpdateQuery)
{
    const TypeParam proxy(ProxyRule::refuse);
    const UpdateAnswer answer = update_through(proxy.port(), 5.1F);
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.error.rfind("Bad HTTP status 403 from web site: ", 0), 0U) << answer.error;
    EXPECT_EQ(answer.message, "");
}

// The target of a request is the whole URL, as a proxy wants it.
TEST(WebServerAsProxy, AnswersAnUpdateQuery)
{
    const PhpServer php;
    const UpdateAnswer answer = update_through(php.port(), 5.2F);
    EXPECT_EQ(answer.result, 0) << answer.error;
    EXPECT_EQ(answer.message, "Müller & Co is up to date.\n");
    EXPECT_EQ(answer.version, "5.2");
    EXPECT_EQ(answer.button, "Close");
}

// Deliberate: it is the web server's name, in upper case as always, though nobody looked for it.
TEST(DeadProxy, TheErrorNamesTheWebServer)
{
    const RefusingPort dead;
    const WebOutcome outcome = get_page("http://web1.test/page", through(dead.port()));
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.error, "Can't connect to web server 'WEB1.TEST': " + code_text(ECONNREFUSED));
    EXPECT_EQ(outcome.header, std::nullopt);
    EXPECT_EQ(outcome.body, std::nullopt);
}

TEST(DeadProxy, AnUpdateQueryFails)
{
    const RefusingPort dead;
    const UpdateAnswer answer = update_through(dead.port(), 5.1F);
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.error.rfind("Can't connect to web server 'WWW.", 0), 0U) << answer.error;
}

} // namespace
