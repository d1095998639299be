/// \file
/// The line that shows on a terminal what an exchange is doing, but for the wait itself.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <termios.h>

#include "tests/harness/endurance.h"
#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/busy_port.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// Standard error on a terminal with the program in its foreground.
ProgramOptions watched_on(const Terminal &terminal)
{
    ProgramOptions options;
    options.err = terminal.program_end();
    options.prepare = [&terminal] { terminal.become_controlling(); };
    return options;
}

int count_of(const std::string &text, const std::string &words)
{
    int count = 0;
    for (std::size_t at = 0; (at = text.find(words, at)) != std::string::npos; ++at) {
        ++count;
    }
    return count;
}

/// All that \p arguments write to a terminal.
std::string written_by(const Arguments &arguments)
{
    Terminal terminal;
    run_corvella(arguments, watched_on(terminal));
    return terminal.written();
}

/// What a get writes to a terminal whose reply has this header and then a body, byte by byte.
std::string written_for_slow_body(const std::string &header, int bytes, int milliseconds,
                                  const Arguments &options = {})
{
    const ScriptedServer server(
        {collect_form(), send_bytes(header),
         send_one_by_one(std::string(static_cast<std::size_t>(bytes), 'x'), milliseconds)});
    Arguments arguments = {"get", url_of(server)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return written_by(arguments);
}

const char *const header_of_ten = "HTTP/1.0 200 OK\r\nContent-Length: 10\r\n\r\n";

TEST(TheConnecting, NamesTheHost)
{
    const BusyPort busy;
    EXPECT_TRUE(contains(written_by({"get", busy.url(), "-max-time", "0.2"}),
                         "Connecting to 127.0.0.1..."));
    const ScriptedServer server(replying(good_reply("")));
    EXPECT_TRUE(contains(written_by({"get", "http://Web1.test/", "-proxy", proxy_of(server)}),
                         "Connecting to 127.0.0.1..."));
    EXPECT_TRUE(contains(written_by({"get", "http://localhost" + url_of(server).substr(16)}),
                         "Connecting to localhost..."));
}

TEST(TheConnecting, IsErasedOnceConnected)
{
    Terminal terminal;
    ScriptedServer server({collect_form(), stay_silent(), send_bytes(good_reply("body"))});
    RunningProgram program(corvella_command({"get", url_of(server)}), watched_on(terminal));
    EXPECT_TRUE(terminal.wait_until_seen(
        [](const std::string &line) { return contains(line, "Waiting"); }, 8));
    EXPECT_FALSE(contains(terminal.screen()[0], "Connecting")) << terminal.screen()[0];
    server.release();
    EXPECT_EQ(program.finish().exit_status, 0);
    EXPECT_EQ(terminal.screen(), Arguments{""});
}

TEST(TheBody, IsShownWithItsShare)
{
    const std::string written = written_for_slow_body(header_of_ten, 10, 150);
    EXPECT_TRUE(contains(written, "\rReceived 1 of 10 bytes (10%), 0 s")) << written;
    EXPECT_TRUE(contains(written, "\rReceived 9 of 10 bytes (90%), 1 s")) << written;
    EXPECT_EQ(shown_on_screen(written), Arguments{""});
}

TEST(TheBody, IsShownWithoutAShareOfNothing)
{
    for (const char *const header :
         {"HTTP/1.0 200 OK\r\n\r\n", "HTTP/1.0 200 OK\r\nContent-Length: many\r\n\r\n",
          "HTTP/1.0 200 OK\r\nContent-Length: 0\r\n\r\n"}) {
        const std::string written = written_for_slow_body(header, 3, 150);
        EXPECT_TRUE(contains(written, "\rReceived 1 bytes, 0 s")) << written;
        EXPECT_FALSE(contains(written, "%")) << written;
    }
}

TEST(TheBody, IsNeverMoreThanTheWhole)
{
    const std::string written =
        written_for_slow_body("HTTP/1.0 200 OK\r\nContent-Length: 1\r\n\r\n", 3, 150);
    EXPECT_TRUE(contains(written, "\rReceived 2 of 1 bytes (100%), 0 s")) << written;
}

TEST(TheBody, IsShownTenTimesASecond)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string written = written_for_slow_body(good_reply(""), 100, 10);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(count_of(written, "Received"), 5) << written;
    EXPECT_LE(count_of(written, "Received"), 2 + static_cast<int>(10 * taken.count())) << written;
}

TEST(TheBody, IsNotShownToAQuietOrAutomatedRun)
{
    EXPECT_EQ(written_for_slow_body(header_of_ten, 10, 50, {"-quiet"}), "");
    EXPECT_EQ(written_for_slow_body(header_of_ten, 10, 50, {"-automated"}), "");
}

TEST(TheBody, IsNotShownToAPipe)
{
    const ScriptedServer server(
        {collect_form(), send_bytes(header_of_ten), send_one_by_one(std::string(10, 'x'), 50)});
    EXPECT_EQ(run_corvella({"get", url_of(server)}).err, "");
}

TEST(TheBody, IsNotShownOnATerminalOfOthers)
{
    const ScriptedServer server(
        {collect_form(), send_bytes(header_of_ten), send_one_by_one(std::string(10, 'x'), 50)});
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    run_corvella({"get", url_of(server)}, options);
    EXPECT_EQ(terminal.written(), "");
}

TEST(TheRequest, IsShownWithItsShareWhileItIsSent)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", std::string(30'000'000, 'x'));
    const ScriptedServer server({}, false); // never reads
    const std::string written =
        written_by({"post", url_of(server), "-data", path, "-max-time", "1"});
    EXPECT_TRUE(contains(written, "\rSent ")) << written;
    EXPECT_TRUE(contains(written, " of 30000000 bytes (")) << written;
    EXPECT_LE(count_of(written, "Sent"), 25) << written;
    const Arguments expected = {"Error: Timeout after 1 seconds", "Error: Timeout after 1 seconds",
                                ""};
    EXPECT_EQ(shown_on_screen(written), expected) << written;
    const std::string quiet =
        written_by({"post", url_of(server), "-data", path, "-max-time", "1", "-quiet"});
    EXPECT_FALSE(contains(quiet, "Sent")) << quiet;
}

// "Sent 2500000 of 30000000 bytes (8%), 0 s" is longer than "Waiting for the web site: 1 s".
TEST(TheLine, LeavesNothingOfALongerOne)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", std::string(30'000'000, 'x'));
    ScriptedServer server(
        {pause_for(500), collect_form(), stay_silent(), send_bytes(good_reply("body"))});
    Terminal terminal;
    RunningProgram program(corvella_command({"post", url_of(server), "-data", path}),
                           watched_on(terminal));
    EXPECT_TRUE(terminal.wait_until_seen(
        [](const std::string &line) {
            const std::string words = "Waiting for the web site: ";
            return line.rfind(words, 0) == 0 && line.size() <= words.size() + 4 &&
                   line.substr(line.size() - 2) == " s";
        },
        20))
        << terminal.written();
    EXPECT_TRUE(contains(terminal.written(), "\rSent ")) << terminal.written();
    server.release();
    EXPECT_EQ(program.finish().exit_status, 0);
    EXPECT_EQ(terminal.screen(), Arguments{""});
}

/// Waits until \p line is to be seen.
bool appears(Terminal &terminal, const std::string &line)
{
    return terminal.wait_until_seen([&line](const std::string &seen) { return seen == line; }, 8);
}

/// Has the terminal show Ctrl-C as "^C", as a person's does.
void echo_keys(const Terminal &terminal)
{
    termios settings = {};
    ASSERT_EQ(tcgetattr(terminal.program_end(), &settings), 0);
    settings.c_lflag |= static_cast<tcflag_t>(ECHO) | static_cast<tcflag_t>(ECHOCTL);
    ASSERT_EQ(tcsetattr(terminal.program_end(), TCSANOW, &settings), 0);
}

/// A server that sends 60,000 bytes of 100,000 and is then silent.
ServerScript stalling()
{
    return {collect_form(), send_bytes("HTTP/1.0 200 OK\r\nContent-Length: 100000\r\n\r\n"),
            send_bytes(std::string(60'000, 'x')), stay_silent(),
            send_bytes(std::string(40'000, 'x'))};
}

TEST(TheBody, IsShownUpToDateWhileItStalls)
{
    Terminal terminal;
    ScriptedServer server(stalling());
    RunningProgram program(corvella_command({"get", url_of(server)}), watched_on(terminal));
    EXPECT_TRUE(appears(terminal, "Received 60000 of 100000 bytes (60%), 2 s"))
        << terminal.written();
    EXPECT_TRUE(appears(terminal, "Received 60000 of 100000 bytes (60%), 3 s"))
        << terminal.written();
    EXPECT_LE(count_of(terminal.written(), "Received 60000 "), 6) << terminal.written();
    server.release();
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.exit_status, 0) << result.signal;
    EXPECT_EQ(result.out, std::string(100'000, 'x'));
    EXPECT_EQ(terminal.screen(), Arguments{""});
}

TEST(TheLine, LeavesNoEchoOfCtrlC)
{
    const std::string text = "Error: User canceled web transaction";
    Terminal terminal;
    ASSERT_NO_FATAL_FAILURE(echo_keys(terminal));
    ScriptedServer server(stalling());
    RunningProgram program(corvella_command({"get", url_of(server)}), watched_on(terminal));
    ASSERT_TRUE(appears(terminal, "Received 60000 of 100000 bytes (60%), 1 s"));
    terminal.type("\x03");
    EXPECT_EQ(program.finish().exit_status, 130);
    EXPECT_TRUE(contains(terminal.written(), "^C")) << terminal.written();
    const Arguments expected = {text, text, ""};
    EXPECT_EQ(terminal.screen(), expected) << terminal.written();
}

// Nothing but a second Ctrl-C ends the look-up.
TEST(TheLine, IsErasedByASecondCtrlC)
{
    Terminal terminal;
    ASSERT_NO_FATAL_FAILURE(echo_keys(terminal));
    RunningProgram program({CORVELLA_HANGING_LOOKUP, "get", "http://web1.test/"},
                           watched_on(terminal));
    ASSERT_TRUE(appears(terminal, "Connecting to web1.test..."));
    terminal.type("\x03");
    EXPECT_TRUE(appears(terminal, "Connecting to web1.test...^C")) << terminal.written();
    // A busy program may see two as one.
    for (int i = 0; i < 10 && !program.process().wait(std::chrono::milliseconds(300)); ++i) {
        terminal.type("\x03");
    }
    EXPECT_EQ(program.finish().signal, SIGINT);
    EXPECT_EQ(terminal.screen(), Arguments{""}) << terminal.written();
}

TEST(TheLine, IsNeverLongerThanTheTerminal)
{
    for (const int columns : {1, 2, 10, 20, 33}) {
        Terminal terminal;
        winsize size = {};
        size.ws_row = 24;
        size.ws_col = static_cast<unsigned short>(columns);
        ASSERT_EQ(ioctl(terminal.program_end(), TIOCSWINSZ, &size), 0);
        const ScriptedServer server(
            {collect_form(), send_bytes(header_of_ten), send_one_by_one(std::string(10, 'x'), 50)});
        ProgramOptions options = watched_on(terminal);
        options.prepare = [&terminal] {
            terminal.become_controlling();
            unsetenv("COLUMNS");
        };
        EXPECT_EQ(run_corvella({"get", url_of(server)}, options).exit_status, 0);
        std::string drawn;
        for (const char c : terminal.written()) {
            drawn = c == '\r' ? "" : drawn + c;
            EXPECT_LT(drawn.size(), static_cast<std::size_t>(columns)) << drawn;
        }
    }
}

TEST(TheLine, IsErasedBeforeOutOfMemory)
{
    if (repetitions(1, 0) == 0) {
        GTEST_SKIP() << "the tool that watches the memory needs more of it";
    }
    const ScriptedServer server(
        {collect_request(), send_bytes(good_reply("")), send_endlessly("more\n")});
    Terminal terminal;
    ProgramOptions options = watched_on(terminal);
    options.prepare = [&terminal] {
        terminal.become_controlling();
        const rlimit limit = {64U << 20, 64U << 20};
        setrlimit(RLIMIT_AS, &limit);
    };
    EXPECT_EQ(run_corvella({"get", url_of(server)}, options).exit_status, 1);
    EXPECT_TRUE(contains(terminal.written(), "\rReceived ")) << terminal.written();
    const Arguments expected = {"Error: Out of memory.", "Error: Out of memory.", ""};
    EXPECT_EQ(terminal.screen(), expected);
}

TEST(TheLine, IsErasedBeforeAFailure)
{
    const ScriptedServer server({collect_form(),
                                 send_bytes("HTTP/1.0 200 OK\r\nContent-Length: 100\r\n\r\n"),
                                 send_one_by_one("xyz", 150)});
    const std::string text = "Error: Incomplete reply from web site: 3 of 100 bytes";
    const std::string written = written_by({"get", url_of(server)});
    EXPECT_TRUE(contains(written, "\rReceived ")) << written;
    const Arguments expected = {text, text, ""};
    EXPECT_EQ(shown_on_screen(written), expected);
}

} // namespace
