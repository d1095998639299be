/// \file
/// update -open: the URL of the reply is opened, where there is something that opens it.
#include <gtest/gtest.h>

#include "tests/tool/program_under_test.h"

namespace {

constexpr char no_service[] = "this system has no service that opens documents";
constexpr char no_web_address[] = "is no web address";

/// Runs a query with -open that the service answers with \p reply.
ProgramResult open_after(const std::string &reply)
{
    ScriptedServer server(replying(reply));
    const ProgramResult result = run_corvella({"update", "-open", "-product", "P", "-productline",
                                               "L", "-version", "5.1", "-proxy", proxy_of(server)});
    EXPECT_EQ(server.connection_count(), 1U);
    return result;
}

// Elsewhere the page would come up on the desktop of whoever runs the tests.
#ifndef __APPLE__
TEST(UpdateOpen, SaysThatThereIsNoServiceOnceTheReplyIsPrinted)
{
    const ProgramResult result = open_after(good_reply(
        "URL: http://x.test/get\nVersion: 5.2\nButton: Get it\nMessage: There is news.\n"));
    EXPECT_EQ(result.exit_status, 1);
    for (const char *const text : {"There is news.", "5.2", "Get it", "http://x.test/get"}) {
        EXPECT_TRUE(contains(result.out, text)) << text << " in " << result.out;
    }
    EXPECT_TRUE(contains(result.err, no_service)) << result.err;
    EXPECT_TRUE(contains(result.err, "http://x.test/get")) << result.err;
    EXPECT_FALSE(contains(result.out, no_service)) << result.out;
}

TEST(UpdateOpen, TakesWebAddressesOfBothKindsInAnyCase)
{
    for (const char *const url : {"http://x.test/", "https://x.test/", "HTTP://X.TEST/",
                                  "Https://x", "http://x.test/a%20b?c=d&e#f"}) {
        const ProgramResult result =
            open_after(good_reply("URL: " + std::string(url) + "\nMessage: news\n"));
        EXPECT_EQ(result.exit_status, 1) << url;
        EXPECT_TRUE(contains(result.err, no_service)) << result.err;
        EXPECT_TRUE(contains(result.err, url)) << result.err;
        EXPECT_FALSE(contains(result.err, no_web_address)) << result.err;
    }
}

TEST(UpdateOpen, TakesTheCarriageReturnOfALineEndForNoPartOfTheUrl)
{
    const ProgramResult result =
        open_after(good_reply("URL: http://x.test/get\r\nMessage: news\r\n"));
    EXPECT_TRUE(contains(result.err, no_service)) << result.err;
    EXPECT_FALSE(contains(result.err, "\r")) << result.err;
}
#endif

TEST(UpdateOpen, RefusesWhatIsNoWebAddress)
{
    for (const char *const url :
         {"file:///etc/passwd", "/etc/passwd", "ftp://x.test/", "javascript:alert(1)",
          "mailto:a@x.test", "x", "x.test", "httpx://x.test/", "http:/x.test/", "https:x.test",
          "telnet://http://x.test/"}) {
        const ProgramResult result =
            open_after(good_reply("URL: " + std::string(url) + "\nMessage: There is news.\n"));
        EXPECT_EQ(result.exit_status, 1) << url;
        EXPECT_TRUE(contains(result.out, "There is news.")) << result.out;
        EXPECT_TRUE(contains(result.err, no_web_address)) << url << result.err;
        EXPECT_TRUE(contains(result.err, std::string("'") + url + "'")) << result.err;
        EXPECT_FALSE(contains(result.err, no_service)) << url << result.err;
    }
}

TEST(UpdateOpen, FailsWhenTheReplyHasNoUrl)
{
    for (const char *const first : {"", "Version: 5.2\n", "URL: \n", "Url: http://x.test/\n"}) {
        const ProgramResult result =
            open_after(good_reply(std::string(first) + "Message: There is news.\n"));
        EXPECT_EQ(result.exit_status, 1) << first;
        EXPECT_TRUE(contains(result.out, "There is news.")) << result.out;
        EXPECT_TRUE(contains(result.err, "Error: ")) << first << result.err;
        EXPECT_FALSE(contains(result.err, no_service)) << first << result.err;
    }
}

TEST(UpdateOpen, OpensNothingWhenTheQueryFails)
{
    const char *const replies[] = {
        "HTTP/1.0 503 Closed today\r\n\r\nMessage: closed\nURL: http://x.test/\n",
        "HTTP/1.0 200 OK\r\n\r\nURL: http://x.test/\n", // without a message it is none
    };
    for (const char *const reply : replies) {
        const ProgramResult result = open_after(reply);
        EXPECT_EQ(result.exit_status, 1) << reply;
        EXPECT_EQ(result.out, "") << reply;
        EXPECT_FALSE(contains(result.err, "http://x.test/")) << result.err;
        EXPECT_FALSE(contains(result.err, no_service)) << result.err;
    }
}

} // namespace
