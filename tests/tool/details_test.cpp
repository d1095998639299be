/// \file
/// -verbose and -quiet: how much is said beside the result.
/// Tests tool/timing.cpp and tool/shown_body.cpp.
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// The lines of a text that begin with \p mark, without it, each with \p line_end behind it.
std::string lines_marked(char mark, const std::string &text, const std::string &line_end)
{
    std::string lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.rfind(std::string(1, mark) + " ", 0) == 0) {
            lines += line.substr(2) + line_end;
        }
    }
    return lines;
}

/// The times that are told, each under the name that it has there.
std::map<std::string, double> seconds_of(const std::string &text)
{
    std::map<std::string, double> seconds;
    std::istringstream stream(lines_marked('*', text, "\n"));
    for (std::string line; std::getline(stream, line);) {
        const std::size_t colon = line.find(": ");
        if (colon != std::string::npos) {
            seconds[line.substr(0, colon)] = std::strtod(line.c_str() + colon + 1, nullptr);
        }
    }
    return seconds;
}

/// The header of a request, its empty line left out.
std::string header_of(const std::string &request)
{
    return request.substr(0, request.find("\r\n\r\n") + 2);
}

TEST(VerboseOption, ShowsTheRequestAsItIsSent)
{
    const Arguments cases[] = {
        {"get", "URL"},
        {"get", "URL?q=%20"},
        {"post", "URL", "name=value", "more=a b"},
        {"post", "URL"},
    };
    for (Arguments arguments : cases) {
        ScriptedServer server(replying(good_reply("body")));
        arguments[1].replace(0, 3, url_of(server));
        arguments.push_back("-verbose");
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(result.out, "body");
        EXPECT_EQ(lines_marked('>', result.err, "\r\n"), header_of(only_request(server)));
    }
}

TEST(VerboseOption, ShowsStarsInPlaceOfCredentials)
{
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_corvella({"get", "-verbose", "http://web1.test:8080/Page", "-proxy", proxy_of(server),
                      "-proxy-user", "Aladdin", "-proxy-pass", "open sesame"});
    const std::string credentials = "QWxhZGRpbjpvcGVuIHNlc2FtZQ==";
    std::string sent = header_of(only_request(server));
    const std::size_t at = sent.find(credentials);
    ASSERT_NE(at, std::string::npos) << sent;
    sent.replace(at, credentials.size(), "****");
    EXPECT_EQ(lines_marked('>', result.err, "\r\n"), sent);
    for (const std::string &secret : {credentials, std::string("Aladdin"), std::string("sesame")}) {
        EXPECT_FALSE(contains(result.err, secret)) << result.err;
    }
    EXPECT_TRUE(contains(result.err, "* Through the proxy 127.0.0.1, port " +
                                         std::to_string(server.port()) + "\n"))
        << result.err;
}

TEST(VerboseOption, ShowsNoStarsWhereNoCredentialsAreSent)
{
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_corvella({"get", "-verbose", url_of(server), "-proxy-user", "u", "-proxy-pass", "p"});
    EXPECT_FALSE(contains(result.err, "Authorization")) << result.err;
    EXPECT_FALSE(contains(result.err, "proxy")) << result.err;
    ScriptedServer proxy(replying(good_reply("body")));
    const std::string half = run_corvella({"get", "-verbose", "http://web1.test/", "-proxy",
                                           proxy_of(proxy), "-proxy-user", "u"})
                                 .err;
    EXPECT_FALSE(contains(half, "Authorization")) << half;
    EXPECT_FALSE(contains(only_request(proxy), "Authorization"));
}

/// What -verbose shows of the body that a post sends.
std::string shown_body(const Arguments &arguments)
{
    const ScriptedServer server(replying(good_reply("")));
    Arguments all = {"post", "-verbose", url_of(server)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return lines_marked('}', run_corvella(all).err, "\n");
}

TEST(VerboseOption, ShowsTheBodyOfAPost)
{
    EXPECT_EQ(shown_body({"product=A B", "v=1.0"}), "product=A%20B&v=1%2e0\n");
    EXPECT_EQ(shown_body({}), "");
    const TemporaryDirectory directory;
    EXPECT_EQ(shown_body({"-data", directory.write("data", "one\r\n\ntwo\n")}), "one\ntwo\n");
}

TEST(VerboseOption, ShowsNoBodyOfAGet)
{
    const ScriptedServer server(replying(good_reply("")));
    EXPECT_EQ(lines_marked('}', run_corvella({"get", "-verbose", url_of(server)}).err, "\n"), "");
}

TEST(VerboseOption, ShowsNoControlCharactersOfABody)
{
    const TemporaryDirectory directory;
    const std::string data("a\0b\x1b[2J\x9b\x7f\xc3\xa9", 11);
    EXPECT_EQ(shown_body({"-data", directory.write("data", data)}), "a?b?[2J??\xc3\xa9\n");
}

TEST(VerboseOption, ShowsStarsInPlaceOfSecretsOfABody)
{
    EXPECT_EQ(shown_body({"user=me", "Password=open sesame", "x=1"}),
              "user=me&Password=****&x=1\n");
    EXPECT_EQ(shown_body({"api_token=1", "PWD=2", "client-secret=3", "passport="}),
              "api%5ftoken=****&PWD=****&client%2dsecret=****&passport=****\n");
    const TemporaryDirectory directory;
    EXPECT_EQ(shown_body({"-data", directory.write("data", "login open sesame, open sesame!"),
                          "-user", "Aladdin", "-pass", "open sesame"}),
              "login ****, ****!\n");
    EXPECT_EQ(shown_body({"text=say open sesame", "-user", "Aladdin", "-pass", "open sesame"}),
              "text=say%20****\n");
}

TEST(VerboseOption, ShowsStarsInPlaceOfSecretsOfAForm)
{
    const TemporaryDirectory directory;
    const std::string data = directory.write("data", "user=me&password=sesame");
    for (const char *const type :
         {"application/x-www-form-urlencoded", "Application/X-WWW-Form-URLEncoded",
          "application/x-www-form-urlencoded;charset=utf-8",
          " application/x-www-form-urlencoded ; charset=utf-8"}) {
        EXPECT_EQ(shown_body({"-data", data, "-type", type}), "user=me&password=****\n") << type;
    }
    for (const char *const type : {"text/plain", "application/x-www-form-urlencoded2", ";", " "}) {
        EXPECT_EQ(shown_body({"-data", data, "-type", type}), "user=me&password=sesame\n") << type;
    }
}

TEST(VerboseOption, ShowsTheBeginningOfALongBody)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", std::string(4095, 'x') + "yz");
    const ScriptedServer server(replying(good_reply("")));
    const std::string err = run_corvella({"post", "-verbose", url_of(server), "-data", path}).err;
    EXPECT_EQ(lines_marked('}', err, "\n"), std::string(4095, 'x') + "y\n");
    EXPECT_TRUE(contains(err, "* the first 4096 of 4097 bytes of the body are shown\n")) << err;
    directory.write("data", std::string(4096, 'x'));
    const std::string whole = run_corvella({"post", "-verbose", url_of(server), "-data", path}).err;
    EXPECT_FALSE(contains(whole, "bytes of the body are shown")) << whole;
}

TEST(VerboseOption, ShowsNoPartOfASecretAtTheEnd)
{
    const TemporaryDirectory directory;
    const Arguments login = {"-user", "me", "-pass", "secret-word"};
    for (const std::string &before :
         {std::string(4090, 'x'), "secret-word" + std::string(4090, 'x')}) {
        const std::string data = before + "secret-word" + std::string(100, 'y');
        Arguments arguments = {"-data", directory.write("data", data)};
        arguments.insert(arguments.end(), login.begin(), login.end());
        EXPECT_FALSE(contains(shown_body(arguments), "se"));
    }
}

// "HTTP/1.0 200 OK", "X-Line: 1" and the empty line have 15 + 2 + 9 + 2 + 2 bytes, of which the
// last line feed is no part of the header text.
TEST(VerboseOption, ShowsTheReplysHeaderAndTheSizes)
{
    ScriptedServer server(replying("HTTP/1.0 200 OK\r\nX-Line: 1\r\n\r\n12345"));
    const ProgramResult result = run_corvella({"get", "-verbose", url_of(server)});
    EXPECT_EQ(result.out, "12345");
    EXPECT_EQ(lines_marked('<', result.err, "\n"), "HTTP/1.0 200 OK\nX-Line: 1\n");
    EXPECT_TRUE(contains(result.err, " s, 29 bytes of header, 5 bytes of body\n")) << result.err;
}

TEST(VerboseOption, ShowsTheTimeInPiecesAndInAll)
{
    ScriptedServer server({collect_request(), pause_for(300), send_bytes("HTTP/1.0 200 OK\r\n\r\n"),
                           pause_for(200), send_bytes("12345")});
    const ProgramResult result = run_corvella({"get", "-verbose", url_of(server)});
    const std::map<std::string, double> seconds = seconds_of(result.err);
    ASSERT_EQ(seconds.size(), 6u) << result.err;
    double sum = 0.0;
    for (const char *const piece : {"address", "connection", "request", "header", "body"}) {
        ASSERT_EQ(seconds.count(piece), 1u) << result.err;
        EXPECT_GE(seconds.at(piece), 0.0);
        sum += seconds.at(piece);
    }
    // A program that waits for the processor notices the end of a piece later than it was.
    EXPECT_GE(seconds.at("request") + seconds.at("header"), 0.299) << result.err;
    EXPECT_GE(seconds.at("header"), 0.15) << result.err;
    EXPECT_GE(seconds.at("body"), 0.1) << result.err;
    EXPECT_LT(seconds.at("in all"), 30.0) << result.err;
    EXPECT_NEAR(seconds.at("in all"), sum, 0.1) << result.err;
}

TEST(VerboseOption, ShowsOnlyThePiecesThatWereDone)
{
    ScriptedServer closing({collect_request()});
    const std::string cut_off = run_corvella({"get", "-verbose", url_of(closing)}).err;
    EXPECT_EQ(seconds_of(cut_off).count("header"), 1u) << cut_off;
    const RefusingPort port;
    const std::string url = "http://127.0.0.1:" + std::to_string(port.port()) + "/";
    const std::string refused = run_corvella({"get", "-verbose", url}).err;
    EXPECT_EQ(seconds_of(refused).count("address"), 1u) << refused;
    EXPECT_EQ(seconds_of(refused).count("in all"), 1u) << refused;
    EXPECT_EQ(seconds_of(refused).size(), 2u) << refused;
}

TEST(VerboseOption, ShowsALongHeaderWhole)
{
    const std::string line = "X: " + std::string(70000, 'x');
    ScriptedServer server(replying("HTTP/1.0 200 OK\r\n" + line + "\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", "-verbose", url_of(server)});
    EXPECT_EQ(lines_marked('<', result.err, "\n"), "HTTP/1.0 200 OK\n" + line + "\n");
}

TEST(VerboseOption, ShowsTheHeaderOfARefusalBeforeTheReason)
{
    ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\nX-Why: gone\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", "-verbose", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    const std::size_t header = result.err.find("< X-Why: gone\n");
    ASSERT_NE(header, std::string::npos) << result.err;
    EXPECT_NE(result.err.find("Error: Bad HTTP status 404", header), std::string::npos)
        << result.err;
}

TEST(VerboseOption, ShowsNoRequestThatIsNotSent)
{
    const ProgramResult result = run_corvella({"get", "-verbose", "ftp://web1.test/"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_FALSE(contains(result.err, "> ")) << result.err;
    EXPECT_FALSE(contains(result.err, "< ")) << result.err;
    EXPECT_TRUE(contains(result.err, "0 bytes of header, 0 bytes of body")) << result.err;
}

TEST(VerboseOption, ShowsNoControlCharactersOnATerminal)
{
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    const std::string reply = "HTTP/1.0 200 OK\r\nX: \x1b[2J\x9b over\rwritten\r\n\r\n";
    ScriptedServer server(replying(reply));
    run_corvella({"get", "-verbose", url_of(server)}, options);
    EXPECT_TRUE(contains(terminal.written(), "< X: ?[2J? over\r\n< written\r\n"))
        << terminal.written();
    ScriptedServer other(replying(reply));
    EXPECT_TRUE(contains(run_corvella({"get", "-verbose", url_of(other)}).err,
                         "< X: \x1b[2J\x9b over\n< written\n"));
}

TEST(VerboseOption, GoesWithRequestsOnlyAndNotWithQuiet)
{
    const struct {
        Arguments arguments;
        const char *complaint;
    } cases[] = {
        {{"update", "-verbose"}, "-verbose does not go with update."},
        {{"describe", "-verbose"}, "-verbose does not go with describe."},
        {{"describe", "-quiet"}, "-quiet does not go with describe."},
        {{"open", "/", "-quiet"}, "-quiet does not go with open."},
        {{"get", "http://127.0.0.1:1/", "-quiet", "-verbose"},
         "-quiet and -verbose exclude each other."},
    };
    for (const auto &[arguments, complaint] : cases) {
        const ProgramResult result = run_corvella(arguments);
        EXPECT_EQ(result.exit_status, 2) << complaint;
        EXPECT_TRUE(contains(result.err, complaint)) << result.err;
    }
}

TEST(QuietOption, KeepsErrorsAndResults)
{
    ScriptedServer good(replying(good_reply("body")));
    const ProgramResult done = run_corvella({"get", "-quiet", url_of(good)});
    EXPECT_EQ(done.exit_status, 0);
    EXPECT_EQ(done.out, "body");
    EXPECT_EQ(done.err, "");
    ScriptedServer bad(replying("HTTP/1.0 404 Not Found\r\n\r\n"));
    const ProgramResult failed = run_corvella({"get", "-quiet", url_of(bad)});
    EXPECT_EQ(failed.exit_status, 1);
    EXPECT_TRUE(contains(failed.err, "Error: Bad HTTP status 404")) << failed.err;
}

} // namespace
