/// \file
/// What post sends: form fields that fit, and files.
/// Tests tool/request_body.cpp.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

std::string repeated(int count, const std::string &text)
{
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

/// Posts with these arguments. \return the request, or "" if none was sent.
std::string request_of(const Arguments &arguments, ProgramResult &result,
                       const ProgramOptions &options = {})
{
    ScriptedServer server(replying(good_reply("thanks")));
    Arguments all = {"post", url_of(server)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    result = run_corvella(all, options);
    const std::vector<std::string> requests = server.requests();
    EXPECT_LE(requests.size(), 1U);
    return requests.empty() ? "" : requests.front();
}

/// Standard input comes from a file.
ProgramOptions reading(const std::string &path)
{
    ProgramOptions options;
    options.prepare = [path] {
        const int descriptor = open(path.c_str(), O_RDONLY);
        dup2(descriptor, STDIN_FILENO);
        close(descriptor);
    };
    return options;
}

// The count of a letter is 1, of a space 1, of another byte 3. A text ends where its count reaches
// 1023 or where an escape would begin above 1020.
TEST(FormField, IsSentAsLongAsItFits)
{
    const struct {
        std::string value;
        std::string sent;
    } cases[] = {
        {std::string(1023, 'x'), std::string(1023, 'x')},
        {std::string(1021, ' '), repeated(1021, "%20")},
        {std::string(1020, 'x') + "-", std::string(1020, 'x') + "%2d"},
        {std::string(341, '-'), repeated(341, "%2d")},
        {std::string(1020, 'x') + " yz", std::string(1020, 'x') + "%20yz"},
    };
    for (const auto &[value, sent] : cases) {
        ProgramResult result = {};
        EXPECT_EQ(body_of(request_of({"v=" + value}, result)), "v=" + sent);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(body_of(request_of({"--", value + "=v"}, result)), sent + "=v");
        EXPECT_EQ(result.exit_status, 0) << result.err;
    }
}

TEST(FormField, ThatDoesNotFitIsRefused)
{
    const std::string cases[] = {
        std::string(1024, 'x'),       std::string(2000, 'x'),       std::string(1022, ' '),
        std::string(1021, 'x') + "-", repeated(400, "\xc3\xa9"),    std::string(342, '-'),
        std::string(1023, 'x') + " ", std::string(1021, 'x') + " ",
    };
    for (const std::string &value : cases) {
        ProgramResult result = {};
        EXPECT_EQ(request_of({"good=1", "text=" + value}, result), "");
        EXPECT_EQ(result.exit_status, 2) << value;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(contains(result.err, "Error: The value of 'text' is too long: a form carries "
                                         "1023 characters of it"))
            << result.err;
        EXPECT_EQ(request_of({"--", value + "=1"}, result), "");
        EXPECT_EQ(result.exit_status, 2) << value;
        EXPECT_TRUE(contains(result.err, "Error: The name '")) << result.err;
        EXPECT_TRUE(contains(result.err, "1023")) << result.err;
    }
}

TEST(FormField, OfALongNameIsNamedByItsBeginning)
{
    ProgramResult result = {};
    request_of({std::string(2000, 'n') + "=1"}, result);
    EXPECT_TRUE(contains(result.err, "The name '" + std::string(60, 'n') + "...'")) << result.err;
}

TEST(DataOption, PostsAFileAsItIs)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    const TemporaryDirectory directory;
    for (const std::string &data : {bytes, std::string(), repeated(1000, bytes)}) {
        const std::string path = directory.write("data", data);
        for (const bool from_input : {false, true}) {
            ProgramResult result = {};
            const std::string request =
                request_of({"-data", from_input ? "-" : path}, result, reading(path));
            EXPECT_EQ(result.exit_status, 0) << result.err;
            EXPECT_EQ(result.out, "thanks");
            EXPECT_EQ(result.err, "");
            EXPECT_EQ(body_of(request), data);
            EXPECT_TRUE(contains(request, "\r\nContent-Type: application/octet-stream\r\n"
                                          "Content-Length: " +
                                              std::to_string(data.size()) + "\r\n"))
                << request.substr(0, 400);
        }
    }
}

TEST(DataOption, ReadsAPipeToItsEnd)
{
    ScriptedServer server(replying(good_reply("")));
    const ProgramResult result = run_program(
        {"/bin/sh", "-c", "(printf one; sleep 0.2; printf two) | \"$0\" post \"$1\" -data -",
         corvella_path(), url_of(server)});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(body_of(only_request(server)), "onetwo");
}

TEST(DataOption, ThatCannotBeReadSendsNothing)
{
    const TemporaryDirectory directory;
    const struct {
        std::string path;
        const char *reason;
    } cases[] = {
        {directory.path("none"), "No such file or directory"},
        {directory.path(), "Is a directory"},
    };
    for (const auto &[path, reason] : cases) {
        ProgramResult result = {};
        EXPECT_EQ(request_of({"-data", path}, result), "");
        EXPECT_EQ(result.exit_status, 1);
        const std::string text = "Error: Read of " + path + " failed: " + reason;
        EXPECT_EQ(result.err, text + "\n" + text + "\a\n");
    }
}

TEST(DataOption, ReportsStandardInputThatCannotBeRead)
{
    ProgramOptions options;
    options.prepare = [] { close(STDIN_FILENO); };
    ProgramResult result = {};
    EXPECT_EQ(request_of({"-data", "-"}, result, options), "");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Error: Read of standard input failed: Bad file descriptor"))
        << result.err;
}

// A file with a hole takes no room on the disk. In 32 bits no string holds it.
TEST(DataOption, OfAHugeFileIsOutOfMemory)
{
    if (sizeof(void *) > 4) {
        GTEST_SKIP() << "a 64-bit program may well have the memory";
    }
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", "");
    ASSERT_EQ(truncate(path.c_str(), off_t{3} << 30), 0);
    ProgramResult result = {};
    EXPECT_EQ(request_of({"-data", path}, result), "");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.err, "Error: Out of memory.\nError: Out of memory.\a\n");
}

TEST(TypeOption, IsSentAsItIs)
{
    const TemporaryDirectory directory;
    ProgramResult result = {};
    const std::string request = request_of(
        {"-data", directory.write("data", "{}"), "-type", "application/json; charset=utf-8"},
        result);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(request, "\r\nContent-Type: application/json; charset=utf-8\r\n"
                                  "Content-Length: 2\r\n"))
        << request;
}

TEST(TypeOption, MayHaveBytesBeyondAscii)
{
    const TemporaryDirectory directory;
    ProgramResult result = {};
    const std::string request =
        request_of({"-data", directory.write("data", "{}"), "-type", "text/\xc3\xa4\xff"}, result);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(request, "\r\nContent-Type: text/\xc3\xa4\xff\r\n")) << request;
}

TEST(TypeOption, WithControlCharactersIsRefused)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", "{}");
    for (const char *const type : {"a\r\nX: y", "a\n", "a\rb", "a\tb", "\x7f", "\x1b[2J"}) {
        ProgramResult result = {};
        EXPECT_EQ(request_of({"-data", path, "-type", type}, result), "");
        EXPECT_EQ(result.exit_status, 2) << type;
        EXPECT_TRUE(contains(result.err, "-type takes a media type without control characters."))
            << result.err;
    }
}

} // namespace
