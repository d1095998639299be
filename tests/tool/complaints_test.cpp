// What the program says, word for word.
// Tests tool/command_line_checks.cpp.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/harness/full_device.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

ProgramResult update_answered_with(const std::string &body, const Arguments &more = {})
{
    ScriptedServer server(replying(good_reply(body)));
    Arguments all = {"update",   "-product", "P",      "-productline",  "L",
                     "-version", "5.1",      "-proxy", proxy_of(server)};
    all.insert(all.end(), more.begin(), more.end());
    return run_corvella(all);
}

TEST(Complaint, OfTheCommandLineRefersToTheHelp)
{
    const struct {
        Arguments arguments;
        const char *text;
    } cases[] = {
        {{}, "A command is needed."},
        {{"-product", "P"}, "A command is needed."},
        {{"fetch"}, "There is no command 'fetch'."},
        {{"get"}, "get needs a URL."},
        {{"post"}, "post needs a URL."},
        {{"get", "http://h/", "http://h/"}, "get takes one URL."},
        {{"get", "a b"}, "A URL has no blanks and no control characters, and is not empty."},
        {{"post", "http://h/", "ab"}, "A form field is given as NAME=VALUE."},
        {{"update"}, "update needs -product, -productline and -version."},
        {{"update", "-product", "P", "-productline", "L", "-version", "5x"},
         "-version takes a number such as 5.1."},
        {{"update", "this"}, "update takes options only."},
        {{"describe", "this"}, "describe takes no arguments."},
        {{"open"}, "open takes one path or URL."},
        {{"get", "http://h/", "-arch", "x"}, "-arch does not go with get."},
    };
    for (const auto &[arguments, text] : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << text;
        EXPECT_EQ(result.out, "") << text;
        EXPECT_EQ(result.err, usage_error_text(text));
    }
}

TEST(Complaint, OfAMalformedProxyShowsTheUsage)
{
    for (const char *const proxy : {"h", ":8080"}) {
        const ProgramResult result = run_corvella({"get", "http://h/", "-proxy", proxy});
        EXPECT_EQ(result.exit_status, 2);
        EXPECT_EQ(result.err, error_text("-proxy takes host:port, with a port from 1 to 65535.") +
                                  run_corvella({"-help"}).out);
    }
}

TEST(Complaint, OfAnEmptyArgumentNamesItsOption)
{
    const struct {
        std::vector<std::string> arguments;
        std::string option;
    } cases[] = {
        {{"get", "http://h/", "-output", ""}, "-output"},
        {{"post", "http://h/", "-data", ""}, "-data"},
        {{"update", "-product", "", "-productline", "L", "-version", "1"}, "-product"},
        {{"update", "-product", "P", "-productline", "", "-version", "1"}, "-productline"},
    };
    for (const auto &[arguments, option] : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << option;
        EXPECT_EQ(result.out, "") << option;
        EXPECT_EQ(result.err, usage_error_text(option + " takes a name that is not empty."));
    }
}

TEST(Complaint, IsFramedInAnAutomatedRun)
{
    const ProgramResult result = run_corvella({"-automated", "get"});
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_EQ(result.out, "CORVELLATESTError: get needs a URL.\a\nENDCORVELLATEST\n");
}

TEST(Complaint, OfALostResultComesOnceForAll)
{
    SKIP_WITHOUT_FULL_DEVICE();
    ProgramOptions options;
    options.out = open("/dev/full", O_WRONLY);
    const ProgramResult result = run_corvella({"describe"}, options);
    close(options.out);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.err, error_text("Write of standard output failed: No space left on device"));
}

TEST(Complaint, OfTheReplyOfTheService)
{
    const struct {
        const char *body;
        const char *text;
    } cases[] = {
        {"Version: 5\n", "The reply has no message."},
        {"Message: m\n", "The reply has no URL to open."},
        {"URL: https:/x\nMessage: m\n", "The reply's URL is no web address: 'https:/x'"},
        {"URL: http:/x\nMessage: m\n", "The reply's URL is no web address: 'http:/x'"},
    };
    for (const auto &[body, text] : cases) {
        const ProgramResult result = update_answered_with(body, {"-open"});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(result.err, error_text(text));
    }
}

#ifndef __APPLE__
TEST(Complaint, OfASystemWithoutADesktop)
{
    EXPECT_EQ(run_corvella({"open", "x"}).err,
              error_text("Open of x failed: this system has no service that opens documents."));
}
#endif

TEST(Result, OfAnUpdateIsALineForEachField)
{
    const std::string body =
        "URL: http://x.test/get\r\nVersion: 5.2\nButton: Get it\nMessage: There is news.\n\n";
    const ProgramResult plain = update_answered_with(body);
    EXPECT_EQ(plain.out, "Message: There is news.\nVersion: 5.2\nButton: Get it\n"
                         "URL: http://x.test/get\n");
    EXPECT_EQ(plain.err, "");
    const ProgramResult framed = update_answered_with(body, {"-automated"});
    EXPECT_EQ(framed.out, "CORVELLATESTupdate: Message: There is news.\nENDCORVELLATEST\n"
                          "CORVELLATESTupdate: Version: 5.2\nENDCORVELLATEST\n"
                          "CORVELLATESTupdate: Button: Get it\nENDCORVELLATEST\n"
                          "CORVELLATESTupdate: URL: http://x.test/get\nENDCORVELLATEST\n");
}

TEST(Result, OfADescriptionNamesEachFact)
{
    const std::string out = run_corvella({"describe"}).out;
    std::size_t at = 0;
    for (const char *const name :
         {"Operating system: Mac OS X\n", "Version: ", "Host name: ", "Command line: ", "Date: ",
          "Short date: ", "Seconds since 1997: "}) {
        EXPECT_EQ(out.compare(at, std::string(name).size(), name), 0) << name << " in " << out;
        at = out.find('\n', at) + 1;
    }
    EXPECT_EQ(at, out.size());
}

TEST(Result, OfTheVersionIsFramedInAnAutomatedRun)
{
    EXPECT_EQ(run_corvella({"-version", "-automated"}).out,
              "CORVELLATESTversion: corvella " + corvella_version() + "\nENDCORVELLATEST\n");
}

TEST(Usage, IsShownBesideAnOptionOfAnotherCommand)
{
    const ProgramResult result = run_corvella({"describe", "-help", "-proxy", "h:1"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out.rfind("Usage: corvella COMMAND ", 0), 0U);
    EXPECT_EQ(result.err, "");
}

TEST(Usage, HasALineForEverything)
{
    const std::string usage = run_corvella({"-help"}).out;
    EXPECT_EQ(usage.rfind("Usage: corvella COMMAND [OPTION]... [ARGUMENT]...\n\nCommands:\n", 0),
              0U);
    for (const std::string line : {
             "  get URL\t\tGet a page and print its body.\n",
             "  post URL [NAME=VALUE]...\tPost a form and print the reply's body.\n",
             "  update\t\tAsk whether there is a newer version of a product.\n",
             "  describe\t\tDescribe this machine and the time.\n",
             "  open TARGET\t\tOpen a file (an absolute path) or a URL.\n",
             "\n\nOptions of get, post and update:\n  -proxy host:port\t",
             "\n\nOptions of get and post:\n  -output FILE\t\tWrite the reply's body to a file.\n",
             "  -header\t\tPrint the reply's header too.\n",
             "\n\nOptions of update:\n  -product NAME\t\tThe product (required).\n",
             "  -productline NAME\tIts product line (required).\n",
             "  -version NUMBER\tIts version, such as 5.1 (required).\n",
             "  -version-name NAME\tThe version's name, if it is not its number.\n",
             "  -os NAME\t\tThe operating system, if not this one.\n",
             "  -os-version TEXT\tIts version, if not this one's.\n",
             "  -machine-id TEXT\tThe computer, if not this one's name.\n",
             "  -arch NAME\t\tThe processor, if not this one's.\n",
             "  -open\t\t\tOpen the URL of the reply.\n",
             "\n\nGeneral options:\n  -automated\t\tFrame the output for an automated run.\n",
             "  -help\t\t\tShow how the program is used; also -h.\n",
             "\n\nOptions without a command:\n  -version\t\tShow the program's version.\n",
             "\nExit status:\n  0\t\t\tdone\n",
             "  1\t\t\tfailed; the reason is on standard error\n",
             "  2\t\t\tthe command line is wrong\n",
             "  3\t\t\tno progress for 10 seconds, or the end of -max-time\n",
             "  130\t\t\tcancelled with Ctrl-C\n",
         }) {
        EXPECT_TRUE(contains(usage, line)) << line;
    }
}

} // namespace
