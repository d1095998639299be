/// \file
/// get and post with replies of which only a part comes.
/// Tests tool/reply_check.cpp.
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

constexpr char old_page[] = "the old page";
constexpr char broken_off[] = "The reply was broken off in its header.";
constexpr char no_reply[] = "The web site closed the connection without a reply.";

/// The program against one reply, with and without a file.
class OneReply {
public:
    explicit OneReply(ServerScript script) : script_(std::move(script))
    {
        directory_.write("page", old_page);
    }
    explicit OneReply(const std::string &reply) : OneReply(replying(reply)) {}

    ProgramResult get(const Arguments &options = {})
    {
        const ScriptedServer server(script_);
        Arguments arguments = {"get", url_of(server)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run_corvella(arguments);
    }
    /// Writes into the file, which has an old page before.
    ProgramResult get_into_file(Arguments options = {})
    {
        options.insert(options.end(), {"-output", directory_.path("page")});
        return get(options);
    }
    std::string file() const
    {
        EXPECT_EQ(directory_.names(), Arguments{"page"});
        return directory_.read("page");
    }

private:
    ServerScript script_;
    TemporaryDirectory directory_;
};

std::string reported(const std::string &reason)
{
    return "Error: " + reason + "\nError: " + reason + "\a\n";
}

/// The reply fails for \p reason, shows nothing and leaves the file.
void expect_refusal(OneReply &reply, const std::string &reason)
{
    const ProgramResult shown = reply.get();
    EXPECT_EQ(shown.exit_status, 1) << reason;
    EXPECT_EQ(shown.out, "") << reason;
    EXPECT_EQ(shown.err, reported(reason));
    const ProgramResult written = reply.get_into_file();
    EXPECT_EQ(written.exit_status, 1) << reason;
    EXPECT_EQ(written.out, "") << reason;
    EXPECT_EQ(written.err, reported(reason));
    EXPECT_EQ(reply.file(), old_page);
}

/// With -keep-partial the reply fails all the same, but \p part is shown and written.
void expect_kept(OneReply &reply, const std::string &reason, const std::string &part)
{
    const ProgramResult shown = reply.get({"-keep-partial"});
    EXPECT_EQ(shown.exit_status, 1) << reason;
    EXPECT_EQ(shown.out, part) << reason;
    EXPECT_EQ(shown.err, reported(reason));
    EXPECT_EQ(reply.get_into_file({"-keep-partial"}).exit_status, 1) << reason;
    EXPECT_EQ(reply.file(), part) << reason;
}

void expect_complete(const std::string &reply, const std::string &body)
{
    OneReply complete(reply);
    const ProgramResult shown = complete.get();
    EXPECT_EQ(shown.exit_status, 0) << shown.err;
    EXPECT_EQ(shown.out, body);
    EXPECT_EQ(shown.err, "");
    EXPECT_EQ(complete.get_into_file().exit_status, 0);
    EXPECT_EQ(complete.file(), body);
}

std::string with_length(const std::string &length, const std::string &body)
{
    return "HTTP/1.0 200 OK\r\nContent-Length: " + length + "\r\n\r\n" + body;
}

TEST(IncompleteReply, BrokenOffInItsHeaderIsRefused)
{
    for (const char *const part :
         {"H", "HTTP/1.0 200 OK", "HTTP/1.0 200 OK\r", "HTTP/1.0 200 OK\r\nContent-Le",
          "HTTP/1.0 200 OK\nX: y", "HTTP/1.0 200 OK\r\n", "HTTP/1.0 200 OK\r\nDate: x\r\n",
          "HTTP/1.0 404 Not Found\r\nX"}) {
        OneReply reply((std::string(part)));
        expect_refusal(reply, broken_off);
        expect_kept(reply, broken_off, "");
    }
}

TEST(IncompleteReply, AcceptsHeadersWithAnEmptyLine)
{
    expect_complete("HTTP/1.0 200 OK\r\nDate: x\r\n\r\n", "");
    expect_complete("HTTP/1.0 200 OK\nDate: x\n\n", "");
    expect_complete("HTTP/1.0 200 OK\r\nDate: x\r\n\nabc", "abc");
}

// RFC 9110 section 15.4.5: what such a reply announces is the length of the page itself.
TEST(NotModifiedReply, IsNotIncomplete)
{
    ScriptedServer server(replying("HTTP/1.0 304 Not Modified\r\nContent-Length: 500\r\n\r\n"));
    const ProgramResult result = run_corvella({"get", url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.err, reported("Bad HTTP status 304 from web site: Not Modified"));
}

TEST(IncompleteReply, WithoutAByteIsRefused)
{
    OneReply reply("");
    expect_refusal(reply, no_reply);
    expect_kept(reply, no_reply, "");
}

TEST(IncompleteReply, KeepsABrokenOffHeaderAsItCame)
{
    const std::string part = "HTTP/1.0 200 OK\r\nContent-Le";
    OneReply reply(part);
    EXPECT_EQ(reply.get({"-header"}).out, "");
    EXPECT_EQ(reply.get({"-header", "-keep-partial"}).out, part);
    const std::string whole_line = "HTTP/1.0 200 OK\r\n";
    OneReply without_empty_line(whole_line);
    EXPECT_EQ(without_empty_line.get({"-header", "-keep-partial"}).out, whole_line);
}

TEST(IncompleteReply, WithANulInItsHeaderReportsIt)
{
    using namespace std::string_literals;
    for (const std::string &start : {"HTTP/1.0 200 OK\r\nX: y\0z"s, "\0"s}) {
        OneReply reply(start + "\r\n\r\nabc");
        expect_refusal(reply, "The reply's header contains a NUL byte.");
        expect_kept(reply, "The reply's header contains a NUL byte.", "abc");
    }
}

TEST(IncompleteReply, ResetInItsHeaderReportsTheReset)
{
    const std::string reason = "Error receiving data from web site: code " +
                               std::to_string(ECONNRESET) + ": " + std::strerror(ECONNRESET);
    for (const char *const part : {"", "HTTP/1.0 200 OK\r\nContent-"}) {
        // The pause lets the program receive the part before the reset discards it.
        OneReply reply({collect_form(), send_bytes(part), pause_for(300), reset_connection()});
        expect_refusal(reply, reason);
    }
}

/// Expects an error that names a reset; several calls of the system may meet it.
void expect_reset(const ProgramResult &result)
{
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, std::strerror(ECONNRESET)) ||
                contains(result.err, std::strerror(EPIPE)))
        << result.err;
}

TEST(IncompleteReply, ResetWithinItsRequestReportsTheReset)
{
    const TemporaryDirectory directory;
    const std::string data = directory.write("data", std::string(20'000'000, 'x'));
    for (const std::size_t taken : {std::size_t{1}, std::size_t{300'000}}) {
        const ScriptedServer server({collect_slowly(taken, taken, 0), reset_connection()});
        expect_reset(run_corvella({"post", url_of(server), "-data", data}));
    }
}

TEST(IncompleteReply, ResetAtOnceReportsTheReset)
{
    const ScriptedServer server({reset_connection()});
    for (int i = 0; i < 20; ++i) { // the reset comes before, within or after the request
        expect_reset(run_corvella({"get", url_of(server)}));
    }
}

TEST(IncompleteReply, ShorterThanItsLengthIsRefused)
{
    OneReply reply(with_length("1000", "abc"));
    expect_refusal(reply, "Incomplete reply from web site: 3 of 1000 bytes");
    expect_kept(reply, "Incomplete reply from web site: 3 of 1000 bytes", "abc");
}

TEST(IncompleteReply, WithoutItsLastByteIsRefused)
{
    OneReply reply(with_length("4", "abc"));
    expect_refusal(reply, "Incomplete reply from web site: 3 of 4 bytes");
}

TEST(IncompleteReply, WithALengthTooLargeToHoldIsRefused)
{
    OneReply reply(with_length("99999999999999999999999", "abc"));
    expect_refusal(reply, "Incomplete reply from web site: 3 of 9223372036854775807 bytes");
}

TEST(IncompleteReply, WithANulIsRefused)
{
    using namespace std::string_literals;
    OneReply unannounced("HTTP/1.0 200 OK\r\n\r\nabc\0defg"s);
    expect_refusal(unannounced, "Incomplete reply from web site: 5 bytes lost to a NUL byte");
    expect_kept(unannounced, "Incomplete reply from web site: 5 bytes lost to a NUL byte", "abc");
    OneReply announced(with_length("8", "abc\0defg"s));
    expect_refusal(announced,
                   "Incomplete reply from web site: 3 of 8 bytes (5 lost to a NUL byte)");
    // What is left is as long as announced.
    OneReply longer(with_length("3", "abc\0"s));
    expect_refusal(longer, "Incomplete reply from web site: 1 bytes lost to a NUL byte");
}

TEST(IncompleteReply, IsRefusedByPostToo)
{
    const ScriptedServer server(replying(with_length("1000", "abc")));
    const ProgramResult result = run_corvella({"post", url_of(server), "a=b"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, reported("Incomplete reply from web site: 3 of 1000 bytes"));
}

// The web client hands out nothing of a body that ends in an error.
TEST(IncompleteReply, KeepsNothingOfABodyThatIsReset)
{
    OneReply reply(
        {collect_form(), send_bytes(good_reply("half")), pause_for(300), reset_connection()});
    const ProgramResult result = reply.get_into_file({"-keep-partial"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Error receiving data from web site: ")) << result.err;
    EXPECT_EQ(reply.file(), old_page);
}

TEST(CompleteReply, HasAHeaderOfEitherLineEnd)
{
    expect_complete("HTTP/1.0 200 OK\r\n\r\nabc", "abc");
    expect_complete("HTTP/1.0 200 OK\n\nabc", "abc");
    expect_complete("HTTP/1.0 200 OK\r\n\r\n", "");
}

TEST(CompleteReply, IsAsLongAsAnnouncedOrLonger)
{
    expect_complete(with_length("3", "abc"), "abc");
    expect_complete(with_length("2", "abc"), "abc");
    expect_complete(with_length("0", ""), "");
}

TEST(CompleteReply, MayHaveAnOddLength)
{
    for (const char *const length : {"", "-5", "+5", "0x10", "10 bytes", "1,2", "many"}) {
        expect_complete(with_length(length, "abc"), "abc");
    }
}

TEST(CompleteReply, OfStatus204HasNoBody)
{
    expect_complete("HTTP/1.0 204 No Content\r\nContent-Length: 1000\r\n\r\n", "");
}

TEST(ChunkedReply, IsKeptAsItCameWithOneWarning)
{
    const std::string warning = "The reply's body is in chunked coding and is kept as it came.";
    for (const char *const coding : {"chunked", "Chunked", "gzip, CHUNKED"}) {
        OneReply reply("HTTP/1.1 200 OK\r\ntransfer-encoding: " + std::string(coding) +
                       "\r\n\r\n3\r\nabc\r\n0\r\n\r\n");
        const ProgramResult result = reply.get();
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_EQ(result.out, "3\r\nabc\r\n0\r\n\r\n");
        EXPECT_EQ(result.err, "Warning: " + warning + "\nWarning: " + warning + "\a\n");
        EXPECT_EQ(reply.get({"-quiet"}).err, "");
    }
}

TEST(ChunkedReply, IsNotAssumedOfOtherCodings)
{
    expect_complete("HTTP/1.0 200 OK\r\nTransfer-Encoding: identity\r\n\r\nabc", "abc");
    expect_complete("HTTP/1.0 200 OK\r\nTransfer-Encoding: chunk\r\n\r\nabc", "abc");
}

TEST(BadStatus, NamesThePlaceThatTheReplyRefersTo)
{
    for (const char *const command : {"get", "post"}) {
        const ScriptedServer server(
            replying("HTTP/1.0 302 Found\r\nlocation:  http://x.test/new \r\n\r\nmoved"));
        const ProgramResult result = run_corvella({command, url_of(server)});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, reported("Bad HTTP status 302 from web site: Found. It refers to "
                                       "http://x.test/new"));
    }
}

TEST(BadStatus, KeepsControlCharactersOfThePlaceInAPipe)
{
    OneReply reply("HTTP/1.0 302 Found\r\nLocation: http://x.test/\x1b[2J\x07\r\n\r\n");
    EXPECT_EQ(reply.get().err, reported("Bad HTTP status 302 from web site: Found. It refers to "
                                        "http://x.test/\x1b[2J\x07"));
}

TEST(BadStatus, WithAnEmptyPlaceNamesNone)
{
    OneReply reply("HTTP/1.0 302 Found\r\nLocation:\r\n\r\n");
    EXPECT_EQ(reply.get().err, reported("Bad HTTP status 302 from web site: Found"));
}

TEST(GoodStatus, ReportsNoPlace)
{
    expect_complete("HTTP/1.0 201 Created\r\nLocation: http://x.test/new\r\n\r\nabc", "abc");
}

TEST(KeepBodyOption, ShowsOrWritesTheBodyOfAFailure)
{
    OneReply reply("HTTP/1.0 404 Not Found\r\n\r\nwhy not");
    const ProgramResult refused = reply.get_into_file();
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_EQ(reply.file(), old_page);
    const ProgramResult shown = reply.get({"-keep-body"});
    EXPECT_EQ(shown.exit_status, 1);
    EXPECT_EQ(shown.out, "why not");
    EXPECT_EQ(shown.err, reported("Bad HTTP status 404 from web site: Not Found"));
    EXPECT_EQ(reply.get_into_file({"-keep-body"}).exit_status, 1);
    EXPECT_EQ(reply.file(), "why not");
}

TEST(KeepBodyOption, DoesNotKeepAPart)
{
    OneReply reply("HTTP/1.0 404 Not Found\r\nContent-Length: 100\r\n\r\nwhy");
    for (const char *const option : {"-keep-body", "-keep-partial"}) {
        const ProgramResult result = reply.get_into_file({option});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(result.err, reported("Bad HTTP status 404 from web site: Not Found") +
                                  reported("Incomplete reply from web site: 3 of 100 bytes"));
        EXPECT_EQ(reply.file(), old_page);
    }
    reply.get_into_file({"-keep-body", "-keep-partial"});
    EXPECT_EQ(reply.file(), "why");
}

TEST(KeepOptions, ChangeNothingOfACompleteReply)
{
    OneReply reply(good_reply("abc"));
    const ProgramResult result = reply.get({"-keep-body", "-keep-partial"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "abc");
    EXPECT_EQ(result.err, "");
}

} // namespace
