#include <gtest/gtest.h>

#include "tests/harness/real_servers.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// The form that the program posts to the update page when it is run with these arguments.
std::string posted_form(const Arguments &arguments)
{
    ScriptedServer server(replying(good_reply("Message: fine\n")));
    Arguments all = arguments;
    all.insert(all.end(), {"-proxy", proxy_of(server)});
    const ProgramResult result = run_corvella(all);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    const std::string request = only_request(server);
    EXPECT_EQ(request.rfind("POST " + update_url() + " HTTP/1.0\r\n", 0), 0U) << request;
    return body_of(request);
}

/// Runs a query that the service answers with \p reply.
ProgramResult answered_with(const std::string &reply, const Arguments &more = {})
{
    ScriptedServer server(replying(reply));
    Arguments all = {"update",   "-product", "P",      "-productline",  "L",
                     "-version", "5.1",      "-proxy", proxy_of(server)};
    all.insert(all.end(), more.begin(), more.end());
    return run_corvella(all);
}

/// The value of one field of a form, as it was sent; "(none)" if it is not there.
std::string field_of(const std::string &form, const std::string &name)
{
    const std::string fields = "&" + form + "&";
    const std::size_t at = fields.find("&" + name + "=");
    if (at == std::string::npos) {
        return "(none)";
    }
    const std::size_t value = at + name.size() + 2;
    return fields.substr(value, fields.find('&', value) - value);
}

TEST(UpdateCommand, PostsWhatItIsGiven)
{
    EXPECT_EQ(posted_form({"update", "-product", "My Product", "-productline", "Line", "-version",
                           "5.1", "-version-name", "five one", "-os", "BeOS", "-os-version", "R5",
                           "-machine-id", "id-7", "-arch", "ppc"}),
              "product=My%20Product&productline=Line&version=5%2e100&version%5fname=five%20one"
              "&os=BeOS&os%5fversion=R5&machine%5fid=id%2d7&processor%5farch=ppc");
}

TEST(UpdateCommand, SendsTheVersionAsTypedAsItsName)
{
    for (const std::string version : {"5", "5.", ".5", "05.100", "5.0000"}) {
        const std::string form =
            posted_form({"update", "-product", "P", "-productline", "L", "-version", version});
        const std::size_t point = version.find('.');
        std::string name = version;
        if (point != std::string::npos) {
            name.replace(point, 1, "%2e");
        }
        EXPECT_EQ(field_of(form, "version%5fname"), name);
    }
}

TEST(UpdateCommand, PrintsEachFieldWithoutTheLineEndAfterIt)
{
    for (const char *const end : {"\n", "\r\n", "\r\n\r\n", "\r", ""}) {
        const ProgramResult result =
            answered_with(good_reply("Version: 5.2\r\nURL: http://x.test/\r\nButton: Get it\r\n"
                                     "Message: one\r\n\r\ntwo" +
                                     std::string(end)));
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(result.out, "Message: one\r\n\r\ntwo\nVersion: 5.2\nButton: Get it\n"
                              "URL: http://x.test/\n");
    }
}

TEST(UpdateCommand, TakesItsOptionsInAnyOrderAndForm)
{
    EXPECT_EQ(posted_form({"update", "--arch=ppc", "+machine-id", "m", "-version=12", "-os", "o",
                           "--os-version", "v", "-productl", "L", "-product=P", "-version-n", "N"}),
              "product=P&productline=L&version=12%2e000&version%5fname=N&os=o&os%5fversion=v"
              "&machine%5fid=m&processor%5farch=ppc");
}

// The fields have room for 65,536 bytes, one of which is their NUL.
TEST(UpdateCommand, ShowsAValueOfAnyLengthThatItKeepsOnALineOfItsOwn)
{
    const std::string longest(65535, 'x');
    EXPECT_EQ(answered_with(good_reply("Version: " + longest + "y\nURL: u\nMessage: m\n")).out,
              "Message: m\nVersion: " + longest + "\nURL: u\n");
}

TEST(UpdateCommand, TakesNoOperand)
{
    const ProgramResult result =
        run_corvella({"update", "P", "-product", "P", "-productline", "L", "-version", "5.1"});
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "update takes options only.")) << result.err;
}

TEST(UpdateCommand, NeedsEachOfTheThreeThatDescribeTheProduct)
{
    const Arguments cases[] = {
        {"update"},
        {"update", "-productline", "L", "-version", "5.1"},
        {"update", "-product", "P", "-version", "5.1"},
        {"update", "-product", "P", "-productline", "L"},
    };
    for (const Arguments &arguments : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << arguments.size();
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(contains(result.err, "update needs -product, -productline and -version."))
            << result.err;
    }
}

TEST(UpdateCommand, TakesTheProductsVersionWhereverItStands)
{
    const Arguments cases[] = {
        {"-version", "5.1", "update", "-product", "P", "-productline", "L"},
        {"--version=5.1", "update", "-product", "P", "-productline", "L"},
        {"-product", "P", "+version", "5.1", "-productline", "L", "update"},
        {"-product", "P", "update", "-version", "5.1", "-productline", "L"},
        {"update", "-version=5.1", "-product", "P", "-productline", "L"},
        {"update", "-product", "P", "-productline", "L", "-version", "5.1"},
        {"-automated", "update", "-product", "P", "-productline", "L", "-version", "5.1"},
        {"-product", "update", "-productline", "L", "-version", "5.1", "update"},
    };
    for (const Arguments &arguments : cases) {
        EXPECT_EQ(field_of(posted_form(arguments), "version"), "5%2e100")
            << arguments[0] << " " << arguments[1];
    }
}

// The word alone does not make it the command.
TEST(UpdateCommand, OnlyTheFirstOperandIsTheCommand)
{
    const Arguments cases[] = {
        {"get", "http://127.0.0.1:1/", "-output", "update", "-version"},
        {"-output", "update", "get", "http://127.0.0.1:1/", "-version"},
        {"-output=update", "get", "http://127.0.0.1:1/", "-version"},
        {"post", "http://127.0.0.1:1/", "update", "-version"},
    };
    for (const Arguments &arguments : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << arguments[0] << " " << arguments[1] << result.err;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(contains(result.err, "-version does not go with ")) << result.err;
    }
}

TEST(UpdateCommand, PrintsTheVersionNumberWithThreeDecimals)
{
    struct {
        const char *given;
        const char *posted;
    } const cases[] = {
        {"5.1", "5%2e100"},
        {"5", "5%2e000"},
        {"0.062", "0%2e062"},
        {"5.", "5%2e000"},
        {".5", "0%2e500"},
        {"10.4000", "10%2e400"},
        {"007.120", "7%2e120"},
        {"12345.678", "12345%2e678"},
        {"16777216", "16777216%2e000"},
    };
    for (const auto &[given, posted] : cases) {
        const std::string form =
            posted_form({"update", "-product", "P", "-productline", "L", "-version", given});
        EXPECT_EQ(field_of(form, "version"), posted) << given;
    }
}

TEST(UpdateCommand, DescribesTheMachineByItself)
{
    const std::string form =
        posted_form({"update", "-product", "P", "-productline", "L", "-version", "5.1"});
    EXPECT_EQ(field_of(form, "os"), "Mac%20OS%20X");
#ifndef __APPLE__
    EXPECT_EQ(field_of(form, "os%5fversion"), "unknown");
#endif
    for (const char *const name : {"os%5fversion", "machine%5fid", "processor%5farch"}) {
        EXPECT_NE(field_of(form, name), "") << name;
        EXPECT_NE(field_of(form, name), "(none)") << name;
    }
}

TEST(UpdateCommand, PrintsMessageVersionButtonAndUrl)
{
    const ProgramResult result = answered_with(good_reply(
        "URL: http://x.test/get\nVersion: 5.2\nButton: Get it\nMessage: There is news.\n"));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    std::size_t from = 0;
    for (const char *const text : {"There is news.", "5.2", "Get it", "http://x.test/get"}) {
        from = result.out.find(text, from);
        ASSERT_NE(from, std::string::npos) << text << " in " << result.out;
    }
}

TEST(UpdateCommand, PrintsEveryLineOfTheMessage)
{
    const ProgramResult result = answered_with(good_reply("Message: one\ntwo: 2\nVersion: 3\n"));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "one\ntwo: 2\nVersion: 3\n")) << result.out;
}

TEST(UpdateCommand, ALongMessageIsNotCutShort)
{
    const std::string message(3000, 'm');
    const ProgramResult result = answered_with(good_reply("Message: " + message + "\n"));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, message)) << result.out.size();
}

TEST(UpdateCommand, AReplyWithoutAMessageIsAFailureThatIsExplained)
{
    for (const char *const body : {"", "Version: 5.2\n", "nothing", "message: x\n"}) {
        const ProgramResult result = answered_with(good_reply(body));
        EXPECT_EQ(result.exit_status, 1) << body;
        EXPECT_EQ(result.out, "") << body;
        EXPECT_TRUE(contains(result.err, "Error: ")) << result.err;
        EXPECT_FALSE(contains(result.err, "Error: \n")) << result.err;
    }
}

TEST(UpdateCommand, ABadStatusIsAFailure)
{
    const ProgramResult result =
        answered_with("HTTP/1.0 503 Closed today\r\n\r\nMessage: closed\n");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Bad HTTP status 503 from web site: Closed today"))
        << result.err;
}

TEST(UpdateCommand, AVersionThatIsNoNumberIsRefused)
{
    for (const char *const version : {"five", "", "v5.1", "--", "5,1", "5.1x", "-5", "."}) {
        ScriptedServer server(replying(good_reply("Message: fine\n")));
        const ProgramResult result =
            run_corvella({"update", "-product", "P", "-productline", "L", "-proxy",
                          proxy_of(server), "-version", version});
        EXPECT_EQ(result.exit_status, 2) << version;
        EXPECT_EQ(server.connection_count(), 0U) << version;
    }
}

TEST(UpdateCommand, FramesItsResultInAnAutomatedRun)
{
    const ProgramResult result =
        answered_with(good_reply("Version: 5.2\nMessage: There is news.\n"), {"-automated"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out.rfind("CORVELLATEST", 0), 0U) << result.out;
    EXPECT_TRUE(contains(result.out, "There is news.\nENDCORVELLATEST\n")) << result.out;
    // Nothing stands between the frames.
    std::string rest = result.out;
    while (rest.rfind("CORVELLATEST", 0) == 0) {
        const std::size_t end = rest.find("\nENDCORVELLATEST\n");
        ASSERT_NE(end, std::string::npos) << result.out;
        rest.erase(0, end + 17);
    }
    EXPECT_EQ(rest, "");
}

TEST(UpdateCommand, AsksTheStandInService)
{
    const PhpServer php;
    const ProgramResult result = run_corvella(
        {"update", "-product", "Plug-in", "-productline", "L", "-version", "5.1", "-version-name",
         "five one", "-proxy", "127.0.0.1:" + std::to_string(php.port())});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "Plug-in 5.2 is available; you have five one.\n"))
        << result.out;
    EXPECT_TRUE(contains(result.out, "Download")) << result.out;
    EXPECT_TRUE(contains(result.out, "http://www.morvane.example/download.html")) << result.out;
}

} // namespace
