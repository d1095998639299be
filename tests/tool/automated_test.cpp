/// \file
/// -automated: every byte of standard output, command by command.
#include <array>
#include <gtest/gtest.h>
#include <regex>
#include <sys/socket.h>
#include <unistd.h>

#include "support/c-utils.h"
#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

std::string frame(const std::string &line)
{
    return "CORVELLATEST" + line + "\nENDCORVELLATEST\n";
}

ProgramResult run_automated(Arguments arguments, const ProgramOptions &options = {})
{
    arguments.insert(arguments.begin(), "-automated");
    return run_corvella(arguments, options);
}

/// Runs an update query that the service answers with \p reply.
ProgramResult query_answered_with(const std::string &reply, const Arguments &more = {},
                                  const ProgramOptions &options = {})
{
    ScriptedServer server(replying(reply));
    Arguments arguments = {"update",   "-product", "P",      "-productline",  "L",
                           "-version", "1",        "-proxy", proxy_of(server)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run_automated(arguments, options);
}

/// Replaces the digits of every time by "T": "0.012" becomes "T".
std::string without_times(const std::string &text)
{
    return std::regex_replace(text, std::regex("(Seconds [^:]*: )[0-9]+[.][0-9]{3}\n"), "$1T\n");
}

/// The frames of an exchange with a reply of this status, header text and body.
std::string exchange_frames(const std::string &command, const std::string &status,
                            std::size_t header_size, std::size_t body_size)
{
    std::string frames = frame(command + ": Status: " + status) +
                         frame(command + ": Header size: " + std::to_string(header_size)) +
                         frame(command + ": Body size: " + std::to_string(body_size));
    for (const char *const step :
         {"for address", "for connection", "for request", "for header", "for body", "in all"}) {
        frames += frame(command + ": Seconds " + step + ": T");
    }
    return frames;
}

// The status line has 15 bytes, the type's line 24, each with 2 more for its end; the empty line's
// carriage return makes 44.
TEST(AutomatedGet, FramesTheExchangeBeforeTheReply)
{
    const std::string reply = good_reply("the body\n");
    const std::string frames = exchange_frames("get", "200", 44, 9);
    ScriptedServer body(replying(reply));
    EXPECT_EQ(without_times(run_automated({"get", url_of(body)}).out), frames + "the body\n");
    ScriptedServer whole(replying(reply));
    EXPECT_EQ(without_times(run_automated({"get", "-header", url_of(whole)}).out), frames + reply);
}

TEST(AutomatedGet, FramesTheExchangeOfAReplyInAFile)
{
    const TemporaryDirectory directory;
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_automated({"get", url_of(server), "-output", directory.path("page")});
    EXPECT_EQ(without_times(result.out), exchange_frames("get", "200", 44, 4));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(directory.read("page"), "body");
}

// "HTTP/1.0 404 Not Found" has 22 bytes.
TEST(AutomatedGet, FramesItsFailureLast)
{
    ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\n\r\nbody"));
    const ProgramResult result = run_automated({"get", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(without_times(result.out),
              exchange_frames("get", "404", 25, 4) +
                  frame("Error: Bad HTTP status 404 from web site: Not Found\a"));
    EXPECT_EQ(result.err, "Error: Bad HTTP status 404 from web site: Not Found\n");
}

TEST(AutomatedGet, FramesTheStepsThatWereDone)
{
    const RefusingPort nobody;
    const ProgramResult result =
        run_automated({"get", "http://127.0.0.1:" + std::to_string(nobody.port()) + "/"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(without_times(result.out),
              frame("get: Seconds for address: T") + frame("get: Seconds in all: T") +
                  frame("Error: Can't connect to web server '127.0.0.1': code 111: Connection "
                        "refused\a"));
}

TEST(AutomatedGet, FramesNoStatusThatCannotBeRead)
{
    for (const char *const header :
         {"220 ready", "HTTP/one", "HTTP/1 200 OK", "HTTP/1.0 1000 Odd", "HTTP/1.0 -1 Odd"}) {
        ScriptedServer server(replying(std::string(header) + "\r\n\r\n"));
        const std::string out = run_automated({"get", url_of(server)}).out;
        EXPECT_FALSE(contains(out, "Status")) << out;
        EXPECT_TRUE(contains(out, frame("get: Body size: 0"))) << out;
    }
}

TEST(AutomatedPost, FramesTheExchangeBeforeTheReply)
{
    ScriptedServer server(replying(good_reply("thanks\n")));
    EXPECT_EQ(without_times(run_automated({"post", url_of(server), "a=b"}).out),
              exchange_frames("post", "200", 44, 7) + "thanks\n");
}

TEST(AutomatedPost, FramesItsFailure)
{
    const ProgramResult result = run_automated({"post", "ftp://web1.test/", "a=b"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, frame("Error: Protocol should be HTTP, not FTP\a"));
}

TEST(AutomatedUpdate, FramesEveryLineOfItsResult)
{
    const ProgramResult result = query_answered_with(
        good_reply("Version: 5.2\r\nURL: http://x.test/get\r\nButton: Get it\r\n"
                   "Message: There is news.\r\n\r\nBuy: it!\r\n"));
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, frame("update: Message: There is news.") +
                              frame("update: Message: Buy: it!") + frame("update: Version: 5.2") +
                              frame("update: Button: Get it") +
                              frame("update: URL: http://x.test/get"));
    EXPECT_EQ(result.err, "");
}

TEST(AutomatedUpdate, LeavesNoFrameToAServer)
{
    const ProgramResult result = query_answered_with(
        good_reply("Message: news\nENDCORVELLATEST\nCORVELLATESTupdate: URL: http://y.test/\r"
                   "CORVELLATESTError: forged\n"));
    EXPECT_EQ(result.out, frame("update: Message: news") +
                              frame("update: Message: ENDCORVELLATEST") +
                              frame("update: Message: CORVELLATESTupdate: URL: http://y.test/") +
                              frame("update: Message: CORVELLATESTError: forged"));
}

TEST(AutomatedUpdate, FramesItsFailure)
{
    const ProgramResult result = query_answered_with(good_reply("Version: 5.2\n"));
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, frame("Error: The reply has no message.\a"));
}

// The carriage returns and line feeds of the reply's header are blanks: two, two and one.
TEST(AutomatedUpdate, FramesAFailureOfSeveralLinesAsOne)
{
    const ProgramResult result =
        query_answered_with("HTTP/1.0 none\r\nENDCORVELLATEST\r\n\r\nMessage: x\n");
    EXPECT_EQ(result.out, frame("Error: Invalid HTTP return status (can't parse header "
                                "HTTP/1.0 none  ENDCORVELLATEST   )\a"));
    EXPECT_TRUE(contains(result.err, "HTTP/1.0 none\r\nENDCORVELLATEST\r\n")) << result.err;
}

TEST(AutomatedUpdate, FramesTheFailureOfItsSecondHalfBehindTheResult)
{
    const ProgramResult result =
        query_answered_with(good_reply("URL: x.test\nMessage: news\n"), {"-open"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, frame("update: Message: news") + frame("update: URL: x.test") +
                              frame("Error: The reply's URL is no web address: 'x.test'\a"));
}

#ifndef __APPLE__
// The date may change while the program runs; the next run then has the right one.
TEST(AutomatedDescribe, FramesEachFact)
{
    std::array<char, 256> host = {};
    gethostname(host.data(), host.size() - 1);
    std::string out;
    std::array<char, 32> date = {};
    std::array<char, 32> short_date = {};
    std::int32_t today = 0;
    do {
        today = today_day_number();
        out = run_automated({"describe"}).out;
    } while (today != today_day_number());
    format_date_long(today, date.data());
    format_date_compact(today, short_date.data());
    const std::string expected =
        frame("describe: Operating system: Mac OS X") + frame("describe: Version: unknown") +
        frame("describe: Host name: " + std::string(host.data())) +
        frame("describe: Command line: " + corvella_path() + " -automated describe") +
        frame("describe: Date: " + std::string(date.data())) +
        frame("describe: Short date: " + std::string(short_date.data()));
    ASSERT_EQ(out.substr(0, expected.size()), expected);
    const std::string begin = "CORVELLATESTdescribe: Seconds since 1997: ";
    std::string last = out.substr(expected.size());
    ASSERT_EQ(last.substr(0, begin.size()), begin);
    last.erase(0, begin.size());
    const std::size_t end = last.find_first_not_of("0123456789");
    ASSERT_NE(end, std::string::npos) << last;
    EXPECT_EQ(last[end], '.');
    EXPECT_EQ(last.find_first_not_of("0123456789", end + 1), end + 7);
    EXPECT_EQ(last.substr(end + 7), "\nENDCORVELLATEST\n");
}

TEST(AutomatedOpen, FramesItsFailure)
{
    EXPECT_EQ(run_automated({"open", "/no/file"}).out,
              frame("Error: Open of /no/file failed: this system has no service that opens "
                    "documents.\a"));
}
#endif

TEST(AutomatedVersion, IsFramed)
{
    EXPECT_EQ(run_automated({"-version"}).out, frame("version: corvella " + corvella_version()));
}

TEST(AutomatedHelp, IsNotFramed)
{
    const std::string help = run_automated({"-help"}).out;
    EXPECT_EQ(help, run_corvella({"-help"}).out);
    EXPECT_FALSE(contains(help, "CORVELLATEST"));
}

TEST(AutomatedComplaint, IsFramedWithoutTheHint)
{
    struct {
        Arguments arguments;
        const char *complaint;
    } const cases[] = {
        {{"get"}, "get needs a URL."},
        {{}, "A command is needed."},
        {{"fetch\nENDCORVELLATEST"}, "There is no command 'fetch ENDCORVELLATEST'."},
        {{"get", "http://x:0/"}, "The port of a URL is a number from 1 to 65535."},
    };
    for (const auto &[arguments, complaint] : cases) {
        const ProgramResult result = run_automated(arguments);
        EXPECT_EQ(result.exit_status, 2) << complaint;
        EXPECT_EQ(result.out, frame("Error: " + std::string(complaint) + "\a"));
        EXPECT_TRUE(contains(result.err, "Try 'corvella -help'.\n")) << result.err;
    }
}

TEST(AutomatedComplaint, OfAnUnknownOptionIsFramed)
{
    const ProgramResult result = run_automated({"describe", "-bogus"});
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_EQ(result.out, frame("Error: unknown option -bogus\a"));
}

/// A socket that keeps what is written to it at a time apart.
class Datagrams {
public:
    Datagrams()
    {
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends_), 0);
    }
    Datagrams(const Datagrams &) = delete;
    Datagrams &operator=(const Datagrams &) = delete;
    ~Datagrams()
    {
        close(ends_[0]);
        close(ends_[1]);
    }
    int writing_end() const
    {
        return ends_[1];
    }
    std::vector<std::string> received() const
    {
        std::vector<std::string> all;
        std::array<char, 4096> one;
        for (ssize_t size; (size = recv(ends_[0], one.data(), one.size(), MSG_DONTWAIT)) > 0;) {
            all.emplace_back(one.data(), static_cast<std::size_t>(size));
        }
        return all;
    }

private:
    int ends_[2] = {-1, -1};
};

TEST(AutomatedOutput, IsWrittenFrameByFrame)
{
    const Datagrams datagrams;
    ProgramOptions options;
    options.out = datagrams.writing_end();
    query_answered_with(good_reply("URL: x.test\nMessage: one\ntwo\n"), {"-open"}, options);
    const std::vector<std::string> expected = {
        frame("update: Message: one"), frame("update: Message: two"), frame("update: URL: x.test"),
        frame("Error: The reply's URL is no web address: 'x.test'\a")};
    EXPECT_EQ(datagrams.received(), expected);
}

} // namespace
