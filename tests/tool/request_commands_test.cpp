#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/harness/endurance.h"
#include "tests/tool/program_under_test.h"

namespace {

std::string all_bytes_but_nul()
{
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string first_line(const std::string &text)
{
    return text.substr(0, text.find("\r\n"));
}

TEST(GetCommand, PrintsTheBodyAsItIs)
{
    const std::string bodies[] = {
        "",       "text without an end of line", "two\r\nlines\n",
        "\n\n\n", all_bytes_but_nul(),           std::string(300'000, 'x') + "end",
    };
    for (const std::string &body : bodies) {
        ScriptedServer server(replying(good_reply(body)));
        const ProgramResult result = run_corvella({"get", url_of(server)});
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(result.out, body);
        EXPECT_EQ(result.err, "");
    }
}

TEST(GetCommand, AReplyLargerThanTheMemoryIsAFailureWithoutOutput)
{
    if (repetitions(1, 0) == 0) {
        GTEST_SKIP() << "the tool that watches the memory needs more of it";
    }
    const std::string piece(65536, 'x');
    const ScriptedServer server(
        {collect_request(), send_bytes(good_reply("")), [&piece](ScriptedConnection &connection) {
             while (connection.send(piece)) {
             }
             return true;
         }});
    ProgramOptions options;
    options.prepare = [] {
        const rlimit limit = {64u << 20, 64u << 20};
        setrlimit(RLIMIT_AS, &limit);
    };
    const ProgramResult result = run_corvella({"get", url_of(server)}, options);
    EXPECT_EQ(result.exit_status, 1) << result.signal;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Error: Out of memory.\nError: Out of memory.\a\n");
}

TEST(GetCommand, AsksForTheUrlAsItWasGiven)
{
    ScriptedServer server(replying(good_reply("")));
    const std::string url = url_of(server, "/Some/Page.html?q=a%20B&r=[1]");
    EXPECT_EQ(run_corvella({"get", url}).exit_status, 0);
    EXPECT_EQ(first_line(only_request(server)), "GET " + url + " HTTP/1.0");
}

TEST(GetCommand, ABadStatusIsAFailureWithoutOutput)
{
    struct {
        const char *status;
        const char *complaint;
    } const cases[] = {
        {"404 Not Found", "Bad HTTP status 404 from web site: Not Found"},
        {"301 Moved Permanently", "Bad HTTP status 301 from web site: Moved Permanently"},
        {"500 Oh dear", "Bad HTTP status 500 from web site: Oh dear"},
        {"199 Early", "Bad HTTP status 199 from web site: Early"},
        {"300 Choose", "Bad HTTP status 300 from web site: Choose"},
    };
    for (const auto &[status, complaint] : cases) {
        ScriptedServer server(
            replying("HTTP/1.0 " + std::string(status) + "\r\n\r\nan error page\n"));
        const ProgramResult result = run_corvella({"get", url_of(server)});
        EXPECT_EQ(result.exit_status, 1) << status;
        EXPECT_EQ(result.out, "") << status;
        EXPECT_TRUE(contains(result.err, std::string("Error: ") + complaint)) << result.err;
    }
}

TEST(GetCommand, AReplyThatIsNotOfTheWebIsAFailure)
{
    ScriptedServer server(replying("220 ready to receive mail\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Invalid non-HTTP header string returned from web site"))
        << result.err;
}

TEST(GetCommand, AServerThatIsNotThereIsAFailure)
{
    const RefusingPort nobody;
    const ProgramResult result =
        run_corvella({"get", "http://127.0.0.1:" + std::to_string(nobody.port()) + "/"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Can't connect to web server '127.0.0.1': code " +
                                         std::to_string(ECONNREFUSED) + ": " +
                                         std::strerror(ECONNREFUSED)))
        << result.err;
}

TEST(GetCommand, AnotherProtocolIsAFailure)
{
    const ProgramResult result = run_corvella({"get", "ftp://127.0.0.1/file"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Protocol should be HTTP, not FTP")) << result.err;
}

TEST(GetCommand, AConnectionThatIsResetInTheBodyGivesNoOutput)
{
    ScriptedServer server({collect_request(), send_bytes(good_reply("the first half")),
                           pause_for(300), reset_connection()});
    const ProgramResult result = run_corvella({"get", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Error receiving data from web site: ")) << result.err;
}

TEST(PostCommand, PostsTheFieldsInTheirOrder)
{
    struct {
        std::vector<std::string> fields;
        const char *body;
    } const cases[] = {
        {{"a=1"}, "a=1"},
        {{"product=A B", "v=1.0"}, "product=A%20B&v=1%2e0"},
        {{"z=1", "a=2", "z=3"}, "z=1&a=2&z=3"},
        {{"empty="}, "empty="},
        // The first "=" ends the name.
        {{"sum=1+1=2"}, "sum=1%2b1%3d2"},
        {{"text=\xc3\xa9&\n"}, "text=%c3%a9%26%0a"},
    };
    for (const auto &[fields, body] : cases) {
        ScriptedServer server(replying(good_reply("thanks")));
        std::vector<std::string> arguments = {"post", url_of(server)};
        arguments.insert(arguments.end(), fields.begin(), fields.end());
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(result.out, "thanks");
        const std::string request = only_request(server);
        EXPECT_EQ(first_line(request), "POST " + url_of(server) + " HTTP/1.0");
        EXPECT_TRUE(
            contains(request, "\r\nContent-Length: " + std::to_string(std::strlen(body)) + "\r\n"))
            << request;
        EXPECT_EQ(body_of(request), body);
    }
}

TEST(PostCommand, ABadStatusIsAFailureWithoutOutput)
{
    ScriptedServer server(replying("HTTP/1.0 403 Forbidden\r\n\r\nkeep out\n"));
    const ProgramResult result = run_corvella({"post", url_of(server), "a=b"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Bad HTTP status 403 from web site: Forbidden")) << result.err;
}

TEST(HeaderOption, PrintsTheWholeReplyAsItCame)
{
    for (const std::string line_end : {"\r\n", "\n"}) {
        const std::string reply =
            "HTTP/1.0 200 OK" + line_end + "X-Line:  kept  " + line_end + line_end + "the body";
        ScriptedServer server(replying(reply));
        EXPECT_EQ(run_corvella({"get", "-header", url_of(server)}).out, reply);
        ScriptedServer other(replying(reply));
        EXPECT_EQ(run_corvella({"post", "-header", url_of(other), "a=b"}).out, reply);
    }
}

TEST(AutomatedOption, FramesAnErrorOnStandardOutput)
{
    ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", "-automated", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.out,
                         "CORVELLATESTError: Bad HTTP status 404 from web site: Not Found\a\n"
                         "ENDCORVELLATEST\n"))
        << result.out;
    // Deliberate: the unframed copy of a message stays.
    EXPECT_TRUE(contains(result.err, "Error: Bad HTTP status 404 from web site: Not Found\n"))
        << result.err;
    EXPECT_FALSE(contains(result.err, "CORVELLATEST")) << result.err;
}

TEST(AutomatedOption, LeavesTheBodyAsItIs)
{
    ScriptedServer server(replying(good_reply("the body\n")));
    const ProgramResult result = run_corvella({"get", "-automated", url_of(server)});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "\nENDCORVELLATEST\nthe body\n")) << result.out;
}

TEST(AutomatedOption, WithoutItAnErrorGoesToStandardErrorTwice)
{
    ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", url_of(server)});
    const std::string line = "Error: Bad HTTP status 404 from web site: Not Found";
    EXPECT_EQ(result.err, line + "\n" + line + "\a\n");
}

} // namespace
