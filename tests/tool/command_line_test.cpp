// Tests tool/command_line_scan.cpp.
#include <gtest/gtest.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

constexpr char proxy_usage[] =
    "  -proxy host:port\tUse a proxy server to connect to the internet.\n"
    "  -proxy-user\t\tUsername for proxy authentication.\n"
    "  -proxy-pass\t\tPassword for proxy authentication.\n";

std::string shown(const Arguments &arguments)
{
    std::string text;
    for (const std::string &argument : arguments) {
        text += argument + "|";
    }
    return text;
}

/// The arguments with the address of \p server for "URL".
Arguments with_url(Arguments arguments, const ScriptedServer &server)
{
    for (std::string &argument : arguments) {
        if (argument == "URL") {
            argument = url_of(server);
        }
    }
    return arguments;
}

void expect_usage_error(const Arguments &arguments)
{
    const ProgramResult result = run_corvella(arguments);
    EXPECT_EQ(result.exit_status, 2) << shown(arguments);
    EXPECT_EQ(result.out, "") << shown(arguments);
    EXPECT_TRUE(contains(result.err, "\a\nTry 'corvella -help'.\n")) << shown(arguments);
}

TEST(CommandLine, TakesOptionsAnywhereAndInEveryForm)
{
    const Arguments cases[] = {
        {"-header", "post", "URL", "a=b"},       {"post", "-header", "URL", "a=b"},
        {"post", "URL", "-header", "a=b"},       {"post", "URL", "a=b", "-header"},
        {"post", "URL", "a=b", "--header"},      {"post", "URL", "a=b", "+header"},
        {"post", "URL", "a=b", "-hea"},          {"+hea", "post", "URL", "a=b"},
        {"post", "-header", "--", "URL", "a=b"}, {"-header", "--", "post", "URL", "a=b"},
        {"post", "URL", "-header", "--", "a=b"}, {"+header", "post", "--", "URL", "a=b"},
    };
    const std::string reply = good_reply("body");
    for (const Arguments &arguments : cases) {
        ScriptedServer server(replying(reply));
        const ProgramResult result = run_corvella(with_url(arguments, server));
        EXPECT_EQ(result.exit_status, 0) << shown(arguments) << result.err;
        EXPECT_EQ(result.out, reply) << shown(arguments);
        EXPECT_EQ(body_of(only_request(server)), "a=b") << shown(arguments);
    }
}

TEST(CommandLine, TakesAnOptionsArgumentInEveryForm)
{
    const Arguments cases[] = {
        {"get", "URL", "-output", "page"},   {"-output", "page", "get", "URL"},
        {"get", "-output", "page", "URL"},   {"get", "URL", "-output=page"},
        {"get", "--output=page", "URL"},     {"get", "--output", "page", "URL"},
        {"+output=page", "get", "URL"},      {"get", "+output", "page", "URL"},
        {"get", "URL", "-out", "page"},      {"get", "URL", "--outp=page"},
        {"get", "URL", "--output=", "page"},
    };
    for (const Arguments &arguments : cases) {
        const TemporaryDirectory directory;
        ProgramOptions options;
        options.directory = directory.path();
        ScriptedServer server(replying(good_reply("body")));
        const ProgramResult result = run_corvella(with_url(arguments, server), options);
        EXPECT_EQ(result.exit_status, 0) << shown(arguments) << result.err;
        EXPECT_EQ(result.out, "") << shown(arguments);
        EXPECT_EQ(directory.read("page"), "body") << shown(arguments);
    }
}

TEST(CommandLine, BehindTwoDashesNothingIsAnOption)
{
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_corvella({"post", "--", url_of(server), "-header=1", "--help=2", "+x=3"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "body");
    EXPECT_EQ(body_of(only_request(server)), "%2dheader=1&%2d%2dhelp=2&%2bx=3");
}

TEST(CommandLine, TwoDashesMayComeFirst)
{
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result = run_corvella({"--", "get", url_of(server)});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "body");
}

TEST(CommandLine, PosixlyCorrectEndsTheOptionsAtTheCommand)
{
    const std::string url = "http://127.0.0.1/";
    const Arguments command = {"/usr/bin/env", "POSIXLY_CORRECT=1", corvella_path()};
    const struct {
        Arguments arguments;
        std::string error;
    } cases[] = {
        {{"get", url, "-bogus"}, "get takes one URL."},
        {{"--", "post", url, "-bogus"}, "A form field is given as NAME=VALUE."},
        {{"-bogus", "get"}, "unknown option -bogus"},
    };
    for (const auto &[arguments, error] : cases) {
        Arguments all = command;
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(run_program(all).err, usage_error_text(error));
    }
}

TEST(CommandLine, ShowsTheUsageWhenAsked)
{
    const Arguments cases[] = {
        {"-help"},
        {"-h"},
        {"+h"},
        {"--h"},
        {"get", "-h"},
        {"--help"},
        {"+help"},
        {"-hel"},
        {"get", "-help"},
        {"-help", "post"},
        {"update", "-help"},
        {"get", "-help", "-proxy", "h:1"},
    };
    for (const Arguments &arguments : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 0) << shown(arguments);
        EXPECT_EQ(result.err, "") << shown(arguments);
        EXPECT_TRUE(contains(result.out, proxy_usage)) << result.out;
    }
}

TEST(CommandLine, TheUsageNamesEveryCommandAndOption)
{
    const std::string usage = run_corvella({"-help"}).out;
    for (const char *const word :
         {"get", "post", "describe", "update", "open", "-output", "-header", "-automated", "-help",
          "-version", "-product", "-productline", "-version-name", "-os", "-os-version",
          "-machine-id", "-arch"}) {
        EXPECT_TRUE(contains(usage, std::string("  ") + word)) << word;
    }
}

TEST(CommandLine, ShowsItsVersionWhenAsked)
{
    for (const char *const option : {"-version", "--version", "+version"}) {
        const ProgramResult result = run_corvella({option});
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_EQ(result.out, "corvella " + corvella_version() + "\n");
        EXPECT_EQ(result.err, "");
    }
}

TEST(CommandLine, ABadProxyShowsTheUsage)
{
    const char *const proxies[] = {
        "host",        "",         ":",       "host:",      "host:0",     "host:abc",
        "host: ",      "host:00",  "host:-1", "host:65536", "host:70000", "host:-65456",
        "host:131152", "host:x80", "a:b:80",  "host:99999", "host:-0",    "host:+0",
        "host:999999",
    };
    ScriptedServer server(replying(good_reply("")));
    for (const char *const proxy : proxies) {
        const Arguments cases[] = {
            {"get", url_of(server), "-proxy", proxy},
            {"post", url_of(server), "a=b", "--proxy", proxy},
            {"-proxy", proxy, "update", "-product", "P", "-productline", "L", "-version", "1"},
        };
        for (const Arguments &arguments : cases) {
            const ProgramResult result = run_corvella(arguments);
            EXPECT_EQ(result.exit_status, 2) << shown(arguments);
            EXPECT_EQ(result.out, "") << shown(arguments);
            EXPECT_TRUE(contains(result.err, proxy_usage)) << shown(arguments) << result.err;
        }
    }
    EXPECT_EQ(server.connection_count(), 0U);
}

// What leaves the range of an int on its way through a conversion is no port either.
TEST(CommandLine, AProxyPortBeyondEveryNumberShowsTheUsage)
{
    for (const char *const proxy : {"host:4294967376", "host:-4294967216", "host:2147483648",
                                    "host:99999999999999999999999999"}) {
        const ProgramResult result = run_corvella({"get", "http://web1.test/", "-proxy", proxy});
        EXPECT_EQ(result.exit_status, 2) << proxy;
        EXPECT_TRUE(contains(result.err, proxy_usage)) << proxy << result.err;
    }
}

TEST(CommandLine, TheFirstAndTheLastPortAreTaken)
{
    for (const char *const proxy : {"127.0.0.1:1", "127.0.0.1:65535"}) {
        const ProgramResult result = run_corvella({"get", "http://web1.test/", "-proxy", proxy});
        EXPECT_EQ(result.exit_status, 1) << proxy << result.err;
        EXPECT_TRUE(contains(result.err, "Can't connect to web server 'WEB1.TEST': "))
            << result.err;
    }
}

TEST(CommandLine, AnOptionOfAnotherCommandIsRefused)
{
    const struct {
        std::vector<std::string> arguments;
        std::string complaint;
    } cases[] = {
        {{"describe", "-proxy", "host:1"}, "-proxy does not go with describe."},
        {{"-header", "update"}, "-header does not go with update."},
        {{"get", "-product", "P", "http://127.0.0.1:1/"}, "-product does not go with get."},
        {{"open", "-output", "f", "/"}, "-output does not go with open."},
    };
    for (const auto &[arguments, complaint] : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << complaint;
        EXPECT_TRUE(contains(result.err, complaint)) << result.err;
    }
}

TEST(CommandLine, AnUnknownCommandIsRefused)
{
    for (const char *const command : {"fetch", "GET", "ge", "gett", "", "-5", "-", "http://x/"}) {
        expect_usage_error({command, "http://127.0.0.1/"});
    }
    const ProgramResult result = run_corvella({"gett", "-header", "http://127.0.0.1/"});
    EXPECT_TRUE(contains(result.err, "There is no command 'gett'.")) << result.err;
}

TEST(CommandLine, OperandsThatAreMissingOrTooManyAreRefused)
{
    const Arguments cases[] = {
        {},
        {"--"},
        {"get"},
        {"get", "--"},
        {"get", "http://127.0.0.1/", "http://127.0.0.1/"},
        {"post"},
        {"post", "http://127.0.0.1/", "no field"},
        {"post", "http://127.0.0.1/", "a=b", "c"},
        {"update"},
        {"update", "-product", "P"},
        {"describe", "this"},
        {"open"},
        {"open", "a", "b"},
    };
    for (const Arguments &arguments : cases) {
        expect_usage_error(arguments);
    }
}

TEST(CommandLine, AUrlWithBlanksOrControlBytesIsRefused)
{
    const char *const tails[] = {
        "/a b",
        " ",
        "/a\tb",
        "/a\nb",
        "/a\r\nX-Injected: 1",
        "/a HTTP/1.0\r\n\r\n",
        "/\x01",
        "/\x1f",
        "/\x7f",
        "/\x1b[2J",
        "/\v",
        "/\f",
    };
    ScriptedServer server(replying(good_reply("")));
    for (const std::string tail : tails) {
        expect_usage_error({"get", url_of(server, tail)});
        expect_usage_error({"post", url_of(server, tail), "a=b"});
        expect_usage_error({"get", " " + url_of(server)});
    }
    expect_usage_error({"get", ""});
    EXPECT_EQ(server.connection_count(), 0U);
}

// A URL is bytes: those beyond ASCII may stand in it as they are.
TEST(CommandLine, AUrlWithBytesBeyondAsciiIsTaken)
{
    ScriptedServer server(replying(good_reply("")));
    const std::string url = url_of(server, "/gr\xc3\xb6\xc3\x9f"
                                           "e\xff");
    EXPECT_EQ(run_corvella({"get", url}).exit_status, 0);
    EXPECT_EQ(only_request(server).rfind("GET " + url + " HTTP/1.0\r\n", 0), 0U);
}

} // namespace
