/// \file
/// The example parse_frames reads what every command frames.
#include <gtest/gtest.h>
#include <regex>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// The lines of the parser for the output of `corvella -automated` with these arguments, "T" in
/// place of times.
std::string parsed(const Arguments &arguments)
{
    Arguments command = {"/bin/sh", "-c", "parser=$0; \"$@\" 2>/dev/null | \"$parser\"",
                         CORVELLA_PARSE_FRAMES};
    command.insert(command.end(), {corvella_path(), "-automated"});
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ProgramResult result = run_program(command);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    return std::regex_replace(result.out, std::regex("[0-9]+[.][0-9]{3,6}\n"), "T\n");
}

std::string parsed_exchange(const std::string &command, const Arguments &sizes)
{
    const std::string begin = "result, " + command + ": ";
    std::string lines = begin + "Status: " + sizes[0] + "\n" + begin + "Header size: " + sizes[1] +
                        "\n" + begin + "Body size: " + sizes[2] + "\n";
    for (const char *const step :
         {"for address", "for connection", "for request", "for header", "for body", "in all"}) {
        lines += begin + "Seconds " + step + ": T\n";
    }
    return lines;
}

TEST(FrameParser, ReadsGetWithItsReply)
{
    const ScriptedServer server(replying(good_reply("body\nCORVELLATEST\n")));
    EXPECT_EQ(parsed({"get", url_of(server)}),
              parsed_exchange("get", {"200", "44", "18"}) + "reply, from: body\n");
}

TEST(FrameParser, ReadsGetIntoAFile)
{
    const TemporaryDirectory directory;
    const ScriptedServer server(replying(good_reply("body")));
    EXPECT_EQ(parsed({"get", url_of(server), "-output", directory.path("page")}),
              parsed_exchange("get", {"200", "44", "4"}));
}

TEST(FrameParser, ReadsPostThatFails)
{
    const ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\n\r\n"));
    EXPECT_EQ(parsed({"post", url_of(server), "a=b"}),
              parsed_exchange("post", {"404", "25", "0"}) +
                  "message, Error: Bad HTTP status 404 from web site: Not Found\n");
}

TEST(FrameParser, ReadsAWarning)
{
    const ScriptedServer server(
        replying("HTTP/1.0 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n"));
    const std::string lines = parsed({"get", url_of(server)});
    EXPECT_TRUE(contains(lines, "message, Warning: The reply's body is in chunked coding and is "
                                "kept as it came.\nreply, from: 0\r\n"))
        << lines;
}

TEST(FrameParser, ReadsUpdate)
{
    const ScriptedServer server(
        replying(good_reply("Version: 5.2\nURL: http://x.test/get\nMessage: one: two\nthree\n")));
    EXPECT_EQ(parsed({"update", "-product", "P", "-productline", "L", "-version", "1", "-proxy",
                      proxy_of(server)}),
              "result, update: Message: one: two\nresult, update: Message: three\n"
              "result, update: Version: 5.2\nresult, update: URL: http://x.test/get\n");
}

TEST(FrameParser, ReadsTheOtherCommands)
{
    const std::string description = parsed({"describe"});
    EXPECT_EQ(description.rfind("result, describe: Operating system: ", 0), 0U) << description;
    EXPECT_TRUE(contains(description, "\nresult, describe: Seconds since 1997: T\n"))
        << description;
    EXPECT_EQ(parsed({"-version"}), "result, version: corvella " + corvella_version() + "\n");
    EXPECT_EQ(parsed({"get"}), "message, Error: get needs a URL.\n");
#ifndef __APPLE__
    EXPECT_EQ(parsed({"open", "/no/file"}),
              "message, Error: Open of /no/file failed: this system has no service that opens "
              "documents.\n");
#endif
}

} // namespace
