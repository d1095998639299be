/// \file
/// What a server says, on a terminal: nothing of it may drive the terminal.
#include <gtest/gtest.h>

#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// What the system makes of a line feed on its way to a terminal.
std::string on_the_line(const std::string &text)
{
    std::string sent;
    for (const char c : text) {
        sent += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    return sent;
}

/// What the program writes to a terminal that is both its standard output and error.
std::string terminal_after(const Arguments &arguments)
{
    Terminal terminal;
    ProgramOptions options;
    options.out = terminal.program_end();
    options.err = terminal.program_end();
    run_corvella(arguments, options);
    return terminal.written();
}

std::string page_on_a_terminal(const std::string &reply, const Arguments &more = {})
{
    ScriptedServer server(replying(reply));
    Arguments arguments = {"get", url_of(server)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return terminal_after(arguments);
}

std::string update_on_a_terminal(const std::string &body, const Arguments &more = {})
{
    ScriptedServer server(replying(good_reply(body)));
    Arguments arguments = {"update",   "-product", "P",      "-productline",  "L",
                           "-version", "1",        "-proxy", proxy_of(server)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return terminal_after(arguments);
}

TEST(BodyOnATerminal, HasNoControlCharacters)
{
    struct {
        std::string body;
        std::string shown;
    } const cases[] = {
        {"plain text, ~!@#\n", "plain text, ~!@#\n"},
        {"tab\tand\nline feed\n", "tab\tand\nline feed\n"},
        {"lines of\r\nthe web\r\n", "lines of\r\nthe web\r\n"},
        {"over\rwritten", "over?written"},
        {"end\r", "end?"},
        {"two\r\r\n", "two?\r\n"},
        {"\x01\x02\x03\x04\x05\x06\x07\x08\x0b\x0c\x0e\x0f", "????????????"},
        {"\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\x1e\x1f", "????????????????"},
        {"a\x7f"
         "b",
         "a?b"},
        {"\x1b[2J\x1b]0;title\a", "?[2J?]0;title?"},
    };
    for (const auto &[body, shown] : cases) {
        EXPECT_EQ(page_on_a_terminal(good_reply(body)), on_the_line(shown));
    }
}

// The control characters of 0x80 to 0x9F begin sequences too, on terminals that know them.
TEST(BodyOnATerminal, HasNoControlCharactersBeyondAscii)
{
    struct {
        std::string body;
        std::string shown;
    } const cases[] = {
        // As bytes of their own,
        {"\x80 \x9b"
         "31m \x9f",
         "? ?31m ?"},
        // and in UTF-8: U+0080, U+009B, U+009F.
        {"\xc2\x80 \xc2\x9b"
         "31m \xc2\x9f",
         "? ?31m ?"},
        {"\xc2\xa0 \xa0 \xff", "\xc2\xa0 \xa0 \xff"},
        // U+00DB, U+20AC, U+1F600 and U+10FFFF have bytes of that range and are none of them.
        {"\xc3\x9b \xe2\x82\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf",
         "\xc3\x9b \xe2\x82\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf"},
        // No UTF-8: overlong, a surrogate, beyond the last character, cut off.
        {"\xc0\x9b \xe0\x9b\x80 \xf0\x8f\x80\x80", "\xc0? \xe0?? \xf0???"},
        {"\xed\xa0\x80", "\xed\xa0?"},
        {"\xf4\x90\x80\x80 \xf5\x80\x80\x80", "\xf4??? \xf5???"},
        {"\xe2\x82", "\xe2?"},
        {"\xf0\x9f\x98x", "\xf0??x"},
        {"\xc3", "\xc3"},
        {"\xc2\xc2\x9b", "\xc2?"},
    };
    for (const auto &[body, shown] : cases) {
        EXPECT_EQ(page_on_a_terminal(good_reply(body)), shown);
    }
}

/// The character that \p text begins with, if that is well-formed UTF-8 of \p length bytes; -1
/// else.
int decoded(const std::string &text, std::size_t length)
{
    static const int lead_bits[] = {0, 0x7f, 0x1f, 0x0f, 0x07};
    static const int least[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto byte = [&text](std::size_t i) { return int{static_cast<unsigned char>(text[i])}; };
    const int lead_mark = length == 1 ? 0 : 0xf00 >> length & 0xff;
    if (text.size() < length || (byte(0) & ~lead_bits[length]) != lead_mark) {
        return -1;
    }
    int character = byte(0) & lead_bits[length];
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) {
            return -1;
        }
        character = character << 6 | (byte(i) & 0x3f);
    }
    const bool is_surrogate = character >= 0xd800 && character <= 0xdfff;
    return character < least[length] || character > 0x10ffff || is_surrogate ? -1 : character;
}

/// A text with its control characters replaced, by what its characters are.
std::string plainly_printable(std::string text)
{
    std::string shown;
    while (!text.empty()) {
        std::size_t length = 4;
        while (length > 1 && decoded(text, length) < 0) {
            --length;
        }
        const int first = static_cast<unsigned char>(text[0]);
        const int character = length > 1 ? decoded(text, length) : first;
        const bool is_control =
            (character < 0x20 && character != '\n') || (character >= 0x7f && character <= 0x9f);
        shown += is_control ? "?" : text.substr(0, length);
        text.erase(0, length);
    }
    return shown;
}

TEST(BodyOnATerminal, KeepsWellFormedUtf8AndNothingThatOnlyLooksLikeIt)
{
    std::string body;
    for (const char *const lead : {"\xc1", "\xc2", "\xdf", "\xe0", "\xe1", "\xec", "\xed", "\xee",
                                   "\xef", "\xf0", "\xf1", "\xf3", "\xf4", "\xf5", "\xff"}) {
        for (const char *const second :
             {"\x7f", "\x80", "\x8f", "\x90", "\x9f", "\xa0", "\xbf", "\xc0"}) {
            for (const char *const rest : {"", "\x80", "\xbf\xbf", "\x80\x7f", "\xc0\x80",
                                           "\x7f\xbf", "\xbf\xc0", "\x80\x80"}) {
                body += std::string(lead) + second + rest + " ";
            }
        }
        body += "\n";
    }
    EXPECT_EQ(page_on_a_terminal(good_reply(body)), on_the_line(plainly_printable(body)));
}

TEST(BodyOnATerminal, IsPrintableUnderAnyNameOfTheTerminal)
{
    EXPECT_EQ(page_on_a_terminal(good_reply("\x1b[0m"), {"-output", "/dev/stdout"}), "?[0m");
}

TEST(HeaderOnATerminal, HasNoControlCharacters)
{
    EXPECT_EQ(page_on_a_terminal("HTTP/1.0 200 OK\r\nX: \x1b[2J\x9b\r\n\r\nbody", {"-header"}),
              on_the_line("HTTP/1.0 200 OK\r\nX: ?[2J?\r\n\r\nbody"));
}

TEST(ReasonOnATerminal, HasNoControlCharacters)
{
    const std::string line = "Error: Bad HTTP status 404 from web site: ?]0;t? Gone?";
    EXPECT_EQ(page_on_a_terminal("HTTP/1.0 404 \x1b]0;t\a Gone\xc2\x9b\r\n\r\n"),
              on_the_line(line + "\n" + line + "\a\n"));
}

TEST(ReasonOnATerminal, HasNoneInWhatIsNoStatusLine)
{
    const std::string seen = page_on_a_terminal("HTTP/1.0 \x1b[2J\r\n\r\n");
    EXPECT_TRUE(contains(seen, "can't parse header HTTP/1.0 ?[2J")) << seen;
    EXPECT_FALSE(contains(seen, "\x1b")) << seen;
}

TEST(UpdateOnATerminal, HasNoControlCharacters)
{
    EXPECT_EQ(update_on_a_terminal("Version: 5\x1b[1m\nButton: Get\b\b\nURL: http://x.test/\x9b\n"
                                   "Message: News\x1b[2J\nof \xe2\x82\xac 5\n"),
              on_the_line("Message: News?[2J\nof \xe2\x82\xac 5\nVersion: 5?[1m\nButton: Get??\n"
                          "URL: http://x.test/?\n"));
}

#ifndef __APPLE__
TEST(UpdateOnATerminal, HasNoneInTheComplaintOfAUrl)
{
    for (const char *const url : {"ftp://x.test/\x1b[2J", "http://x.test/\x1b[2J"}) {
        const std::string seen =
            update_on_a_terminal(std::string("URL: ") + url + "\nMessage: news\n", {"-open"});
        EXPECT_TRUE(contains(seen, "x.test/?[2J")) << seen;
        EXPECT_FALSE(contains(seen, "\x1b")) << seen;
    }
}
#endif

constexpr char hostile_reply[] = "HTTP/1.0 404 \x1b[2J\x9b\r\n\r\n";

TEST(ReasonOffATerminal, StaysAsItIs)
{
    ScriptedServer server(replying(hostile_reply));
    const ProgramResult result = run_corvella({"get", url_of(server)});
    EXPECT_TRUE(contains(result.err, "web site: \x1b[2J\x9b\n")) << result.err;
}

// Each of the two streams is looked at by itself.
TEST(ReasonOffATerminal, StaysAsItIsWhileThePageGoesToATerminal)
{
    Terminal terminal;
    ProgramOptions options;
    options.out = terminal.program_end();
    ScriptedServer server(replying(hostile_reply));
    const ProgramResult result = run_corvella({"get", url_of(server)}, options);
    EXPECT_TRUE(contains(result.err, "web site: \x1b[2J\x9b\n")) << result.err;
}

TEST(BodyOffATerminal, StaysAsItIsWhileErrorsGoToATerminal)
{
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    ScriptedServer server(replying(good_reply("\x1b[2J\x9b\x7f")));
    EXPECT_EQ(run_corvella({"get", url_of(server)}, options).out, "\x1b[2J\x9b\x7f");
}

TEST(UpdateOffATerminal, StaysAsItIs)
{
    ScriptedServer server(replying(good_reply("Message: \x1b[2J\x9b\n")));
    const ProgramResult result = run_corvella({"update", "-product", "P", "-productline", "L",
                                               "-version", "1", "-proxy", proxy_of(server)});
    EXPECT_EQ(result.out, "Message: \x1b[2J\x9b\n");
}

// The frames of an automated run go to standard output.
TEST(FramedReason, HasNoControlCharactersOnATerminal)
{
    Terminal terminal;
    ProgramOptions options;
    options.out = terminal.program_end();
    ScriptedServer server(replying(hostile_reply));
    const ProgramResult result = run_corvella({"get", "-automated", url_of(server)}, options);
    EXPECT_TRUE(
        contains(terminal.written(),
                 on_the_line("CORVELLATESTError: Bad HTTP status 404 from web site: ?[2J?\a\n"
                             "ENDCORVELLATEST\n")))
        << terminal.written();
    EXPECT_TRUE(contains(result.err, "web site: \x1b[2J\x9b\n")) << result.err;
}

} // namespace
