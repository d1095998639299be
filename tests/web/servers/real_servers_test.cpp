#include "tests/harness/real_servers.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/web/servers/form_call.h"
#include "web/web.h"

namespace {

constexpr char private_pages[] =
    "location /private/ { auth_basic Private; auth_basic_user_file passwords; }\n";

/// nginx with a page that only Aladdin may read.
class NginxWithPasswords : public NginxServer {
public:
    NginxWithPasswords() : NginxServer(private_pages)
    {
        directory().write("passwords", "Aladdin:{PLAIN}open sesame\n");
        add_file("private/page.txt", "a treasure\n");
    }
};

TEST(Nginx, SendsAStaticFile)
{
    const NginxServer nginx;
    nginx.add_file("hello.txt", "Hello,\r\nreader.\n");
    const WebOutcome outcome = get_page(nginx.url("/hello.txt"));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(outcome.header.value_or("").substr(0, 17), "HTTP/1.1 200 OK\r\n");
    EXPECT_EQ(outcome.body, "Hello,\r\nreader.\n");
    EXPECT_EQ(status_complaint(outcome), "");
}

TEST(Nginx, SendsAnEmptyFile)
{
    const NginxServer nginx;
    nginx.add_file("empty.txt", "");
    const WebOutcome outcome = get_page(nginx.url("/empty.txt"));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(outcome.body, "");
    EXPECT_EQ(status_complaint(outcome), "");
}

TEST(Nginx, SaysThatAPageIsMissing)
{
    const NginxServer nginx;
    const WebOutcome outcome = get_page(nginx.url("/nowhere.txt"));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(status_complaint(outcome), "Bad HTTP status 404 from web site: Not Found");
}

TEST(Nginx, ARedirectIsNotFollowed)
{
    const NginxServer nginx("location = /old.txt { return 301 /new.txt; }\n");
    nginx.add_file("new.txt", "new\n");
    const WebOutcome outcome = get_page(nginx.url("/old.txt"));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_NE(outcome.header.value_or("").find("/new.txt\r\n"), std::string::npos);
    EXPECT_EQ(status_complaint(outcome), "Bad HTTP status 301 from web site: Moved Permanently");
}

TEST(Nginx, RefusesAPostToAFile)
{
    const NginxServer nginx;
    nginx.add_file("hello.txt", "Hello\n");
    const WebOutcome outcome = post_form(nginx.url("/hello.txt"), {{"a", "b"}});
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_EQ(status_complaint(outcome), "Bad HTTP status 405 from web site: Not Allowed");
}

TEST(Nginx, UnderstandsEveryHeaderLine)
{
    const NginxServer nginx("location = /seen { default_type text/plain; return 200 "
                            "'$request_method $server_protocol $http_host $http_user_agent "
                            "$http_accept_language $content_type $content_length'; }\n");
    EXPECT_EQ(get_page(nginx.url("/seen")).body,
              "GET HTTP/1.0 127.0.0.1 Morvane_Auto1 en-us application/x-www-form-urlencoded 0");
    EXPECT_EQ(post_form(nginx.url("/seen"), {{"a", "b c"}}).body,
              "POST HTTP/1.0 127.0.0.1 Morvane_Auto1 en-us application/x-www-form-urlencoded 7");
}

TEST(Nginx, LetsInWhoeverKnowsThePassword)
{
    const NginxWithPasswords nginx;
    WebCall call;
    call.user = "Aladdin";
    call.password = "open sesame";
    const WebOutcome outcome = get_page(nginx.url("/private/page.txt"), call);
    EXPECT_EQ(status_complaint(outcome), "");
    EXPECT_EQ(outcome.body, "a treasure\n");
}

TEST(Nginx, KeepsOutWhoeverDoesNotKnowThePassword)
{
    struct {
        const char *user;
        const char *password;
    } const cases[] = {
        {"Aladdin", "close sesame"},
        {"Kasim", "open sesame"},
        {"Aladdin", ""},
        {"", ""},
        // With one of the two missing, nothing is sent.
        {"Aladdin", nullptr},
        {nullptr, "open sesame"},
        {nullptr, nullptr},
    };
    const NginxWithPasswords nginx;
    for (const auto &[user, password] : cases) {
        WebCall call;
        call.user = user;
        call.password = password;
        const WebOutcome outcome = get_page(nginx.url("/private/page.txt"), call);
        EXPECT_EQ(status_complaint(outcome), "Bad HTTP status 401 from web site: Unauthorized")
            << (user != nullptr ? user : "(null)") << ":"
            << (password != nullptr ? password : "(null)");
    }
}

// A server of HTTP/1.1 would otherwise send it in chunks, with their lengths between them.
TEST(Nginx, SendsAPageOfUnknownLengthAsItIs)
{
    const NginxServer nginx("location = /made.html { ssi on; }\n");
    nginx.add_file("made.html", "by <!--# echo var=\"request_method\" -->, of any length\n");
    const WebOutcome outcome = get_page(nginx.url("/made.html"));
    EXPECT_EQ(outcome.body, "by GET, of any length\n");
    EXPECT_EQ(outcome.header.value_or("").find("Content-Length"), std::string::npos);
}

// It keeps connections open for 75 s where it is asked to; the wait for its end would time out.
TEST(Nginx, ClosesTheConnectionBehindTheReply)
{
    const NginxServer nginx("keepalive_timeout 75s;\n");
    nginx.add_file("hello.txt", "Hello\n");
    const WebOutcome outcome = get_page(nginx.url("/hello.txt"));
    EXPECT_EQ(outcome.result, 0) << outcome.error;
    EXPECT_NE(outcome.header.value_or("").find("\r\nConnection: close\r\n"), std::string::npos);
}

TEST(Nginx, AnswersOneRequestAfterTheOther)
{
    const NginxServer nginx;
    for (int number = 0; number < 50; ++number) {
        const std::string name = std::to_string(number) + ".txt";
        nginx.add_file(name, "page " + name);
        const WebOutcome outcome = get_page(nginx.url("/" + name));
        EXPECT_EQ(outcome.result, 0) << outcome.error;
        EXPECT_EQ(outcome.body, "page " + name);
    }
}

/// Text without a NUL whose parts are all different.
class EndlessText {
public:
    std::string next(std::size_t size)
    {
        std::string text(size, ' ');
        for (char &character : text) {
            state_ = state_ * 6364136223846793005U + 1442695040888963407U;
            character = static_cast<char>(1 + (state_ >> 33U) % 255);
        }
        return text;
    }

private:
    std::uint64_t state_ = 1;
};

TEST(Nginx, AHundredMegabytesArriveWhole)
{
    constexpr std::size_t piece = 1 << 20;
    constexpr std::size_t pieces = 100;
    const NginxServer nginx;
    EndlessText text;
    for (std::size_t i = 0; i < pieces; ++i) {
        nginx.add_file("large.bin", text.next(piece));
    }
    char *header = nullptr;
    char *body = nullptr;
    ASSERT_EQ(web_request(nginx.url("/large.bin").c_str(), "GET", 0, nullptr, &header, &body,
                          nullptr, 0, nullptr, nullptr),
              0)
        << web_last_error();
    EXPECT_NE(std::strstr(header, "\r\nContent-Length: 104857600\r\n"), nullptr) << header;
    ASSERT_EQ(std::strlen(body), piece * pieces);
    EndlessText expected;
    for (std::size_t i = 0; i < pieces; ++i) {
        ASSERT_TRUE(std::string_view(body + i * piece, piece) == expected.next(piece))
            << "in piece " << i;
    }
    std::free(header);
    std::free(body);
}

} // namespace
