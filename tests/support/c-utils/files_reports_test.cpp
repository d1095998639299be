// What the file functions say when something fails, byte for byte.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/harness/full_device.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

const std::string no_such_file = "No such file or directory";

std::vector<std::pair<int, std::string>> messages;

int collecting_hook(int level, const char *text)
{
    messages.emplace_back(level, text);
    return 0;
}

int errno_changing_hook(int, const char *)
{
    errno = EDOM;
    return 0;
}

class FileReports : public testing::Test {
protected:
    FileReports()
    {
        set_message_hook(nullptr);
        set_print_stream(nullptr);
        set_print_indent(0);
        messages.clear();
    }
    ~FileReports() override
    {
        set_message_hook(nullptr);
    }

    TemporaryDirectory directory;

    /// A stream whose close fails for want of room.
    static std::FILE *open_full_device()
    {
        std::FILE *const stream = open_file("/dev/full", "r+", 0);
        if (stream != nullptr) {
            std::fputs("more than fits", stream);
        }
        return stream;
    }
};

class OpenFailure : public FileReports {};
class FatalOpenFailure : public FileReports {};
class Fallback : public FileReports {};
class CloseFailure : public FileReports {};

std::string failed_open(const char *path, const char *mode, int flags)
{
    return capture_output([=] { EXPECT_EQ(open_file(path, mode, flags), nullptr); }).err;
}

TEST_F(OpenFailure, IsSilentWithoutFlags)
{
    for (const char *const mode : {"w", "a", "r"}) {
        EXPECT_EQ(failed_open("/nonexistent/x", mode, 0), "");
        EXPECT_EQ(failed_open("/nonexistent/x", mode, 4), "");
    }
}

TEST_F(OpenFailure, IsReportedAsAWriteForModesThatBeginWithW)
{
    for (const char *const mode : {"w", "w+", "wb"}) {
        EXPECT_EQ(failed_open("/nonexistent/x", mode, OPEN_FAIL_REPORT),
                  reported("Error", "Write of /nonexistent/x failed at open: " + no_such_file));
    }
}

// Deliberate: only 'w' has the wording of a write, although 'a' writes too.
TEST_F(OpenFailure, IsReportedAsAnOpenForEveryOtherMode)
{
    for (const char *const mode : {"a", "a+", "r", "r+", "rb"}) {
        EXPECT_EQ(failed_open("/nonexistent/x", mode, OPEN_FAIL_REPORT),
                  reported("Error", "Open of /nonexistent/x failed: " + no_such_file));
    }
}

TEST_F(OpenFailure, NamesTheReasonOfTheSystem)
{
    const std::string file = make_file(directory.path("file"));
    EXPECT_EQ(failed_open((file + "/x").c_str(), "r", OPEN_FAIL_REPORT),
              reported("Error", "Open of " + file + "/x failed: Not a directory"));
    EXPECT_EQ(
        failed_open(directory.path().c_str(), "w", OPEN_FAIL_REPORT),
        reported("Error", "Write of " + directory.path() + " failed at open: Is a directory"));
    EXPECT_EQ(failed_open(file.c_str(), "wx", OPEN_FAIL_REPORT),
              reported("Error", "Write of " + file + " failed at open: File exists"));
    EXPECT_EQ(failed_open(file.c_str(), "?", OPEN_FAIL_REPORT),
              reported("Error", "Open of " + file + " failed: Invalid argument"));
    EXPECT_EQ(failed_open(file.c_str(), "", OPEN_FAIL_REPORT),
              reported("Error", "Open of " + file + " failed: Invalid argument"));
}

TEST_F(OpenFailure, ReportsThePathAsItStands)
{
    EXPECT_EQ(failed_open("/nonexistent/%s%n%d", "r", OPEN_FAIL_REPORT),
              reported("Error", "Open of /nonexistent/%s%n%d failed: " + no_such_file));
    EXPECT_EQ(failed_open("", "r", OPEN_FAIL_REPORT),
              reported("Error", "Open of  failed: " + no_such_file));
}

TEST_F(OpenFailure, ReachesTheMessageHookAtLevelNine)
{
    set_message_hook(collecting_hook);
    failed_open("/nonexistent/x", "w", OPEN_FAIL_REPORT);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].first, 9);
    EXPECT_EQ(messages[0].second,
              "Write of /nonexistent/x failed at open: No such file or directory\n");
}

TEST_F(OpenFailure, SaysNothingWhenTheFileOpens)
{
    const std::string path = directory.path("x");
    for (const int flags : {OPEN_FAIL_REPORT + 0, OPEN_FAIL_FATAL + 0, 3}) {
        const CapturedOutput output = capture_output([&] {
            std::FILE *const stream = open_file(path.c_str(), "w", flags);
            EXPECT_NE(stream, nullptr);
            close_file(stream);
        });
        EXPECT_EQ(output.out + output.err, "");
    }
}

TEST_F(FatalOpenFailure, IsReportedOnceAndThrown)
{
    for (const int flags : {OPEN_FAIL_FATAL + 0, OPEN_FAIL_FATAL | OPEN_FAIL_REPORT}) {
        const std::int32_t before = open_file_count;
        const CapturedOutput output = capture_output(
            [=] { EXPECT_THROW(open_file("/nonexistent/x", "w", flags), CorvellaAbortException); });
        EXPECT_EQ(output.err,
                  reported("Error", "Write of /nonexistent/x failed at open: " + no_such_file));
        EXPECT_EQ(output.out, "");
        EXPECT_EQ(open_file_count, before);
    }
}

TEST_F(FatalOpenFailure, IsReportedAsAnOpenForEveryModeButW)
{
    for (const char *const mode : {"a", "r"}) {
        const CapturedOutput output = capture_output([=] {
            EXPECT_THROW(open_file("/nonexistent/x", mode, OPEN_FAIL_FATAL),
                         CorvellaAbortException);
        });
        EXPECT_EQ(output.err, reported("Error", "Open of /nonexistent/x failed: " + no_such_file));
    }
}

TEST_F(FatalOpenFailure, ThrowsCodeOneOfTheUtilities)
{
    set_message_hook(collecting_hook);
    capture_output([] {
        try {
            open_file("/nonexistent/x", "r", OPEN_FAIL_FATAL);
            ADD_FAILURE() << "returned";
        } catch (const CorvellaAbortException &abort) {
            EXPECT_EQ(messages.size(), 1u);
            EXPECT_STREQ(abort.file, "support/c-utils");
            EXPECT_EQ(abort.line, 291);
            EXPECT_EQ(abort.code, 1);
            EXPECT_EQ(abort.reserved, 0);
        }
    });
}

TEST_F(FatalOpenFailure, EndsTheProcessAfterTheReport)
{
    const ChildResult child =
        run_in_child([] { open_file("/nonexistent/x", "r", OPEN_FAIL_FATAL); });
    EXPECT_EQ(child.signal, SIGABRT);
    const std::string report = reported("Error", "Open of /nonexistent/x failed: " + no_such_file);
    EXPECT_EQ(child.err.substr(0, report.size()), report);
}

TEST_F(Fallback, IsNotTouchedWhenTheFirstPathOpens)
{
    const std::int32_t before = open_file_count;
    const std::string first = directory.path("first");
    const std::string second = directory.path("second");
    std::FILE *const stream =
        open_file_with_fallback(first.c_str(), second.c_str(), "w", OPEN_FAIL_REPORT);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(open_file_count, before + 1);
    close_file(stream);
    EXPECT_TRUE(is_there(first));
    EXPECT_FALSE(is_there(second));
}

TEST_F(Fallback, OpensAfterOneReportOfTheFirstPath)
{
    const std::int32_t before = open_file_count;
    const std::string second = make_file(directory.path("second"), "text of the second");
    char text[32] = {};
    const CapturedOutput output = capture_output([&] {
        std::FILE *const stream =
            open_file_with_fallback("/nonexistent/x", second.c_str(), "r", OPEN_FAIL_REPORT);
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(open_file_count, before + 1);
        EXPECT_NE(std::fgets(text, sizeof text, stream), nullptr);
        close_file(stream);
    });
    EXPECT_STREQ(text, "text of the second");
    EXPECT_EQ(output.err, reported("Error", "Open of /nonexistent/x failed: " + no_such_file));
}

TEST_F(Fallback, HasTheSameModeAsTheFirstPath)
{
    const std::string second = make_file(directory.path("second"), "old");
    ASSERT_EQ(chmod(second.c_str(), 0600), 0);
    std::FILE *const stream = open_file_with_fallback("/nonexistent/x", second.c_str(), "a", 0);
    ASSERT_NE(stream, nullptr);
    std::fputs(" new", stream);
    close_file(stream);
    EXPECT_EQ(contents_of(second), "old new");
    EXPECT_EQ(permissions_of(second), 0666u);
}

TEST_F(Fallback, ReportsBothPathsWhenBothFail)
{
    const CapturedOutput output = capture_output([] {
        EXPECT_EQ(
            open_file_with_fallback("/nonexistent/1", "/nonexistent/2", "w", OPEN_FAIL_REPORT),
            nullptr);
    });
    EXPECT_EQ(output.err,
              reported("Error", "Write of /nonexistent/1 failed at open: " + no_such_file) +
                  reported("Error", "Write of /nonexistent/2 failed at open: " + no_such_file));
}

TEST_F(Fallback, FailsSilentlyWithoutFlags)
{
    const CapturedOutput output = capture_output([] {
        EXPECT_EQ(open_file_with_fallback("/nonexistent/1", "/nonexistent/2", "r", 0), nullptr);
    });
    EXPECT_EQ(output.err, "");
}

// Deliberate: the flags are passed on unchanged, so that the first failure gives up.
TEST_F(Fallback, IsNeverTriedWhenTheFirstFailureIsFatal)
{
    const std::string second = directory.path("second");
    const CapturedOutput output = capture_output([&] {
        EXPECT_THROW(
            open_file_with_fallback("/nonexistent/x", second.c_str(), "w", OPEN_FAIL_FATAL),
            CorvellaAbortException);
    });
    EXPECT_FALSE(is_there(second));
    EXPECT_EQ(output.err,
              reported("Error", "Write of /nonexistent/x failed at open: " + no_such_file));
}

TEST_F(CloseFailure, IsReportedAndThenExplained)
{
    SKIP_WITHOUT_FULL_DEVICE();
    std::FILE *const stream = open_full_device();
    if (stream == nullptr) {
        GTEST_SKIP() << "no device that is always full";
    }
    const std::int32_t before = open_file_count;
    const CapturedOutput output = capture_output([=] { EXPECT_EQ(close_file(stream), -1); });
    EXPECT_EQ(output.err, "Error: Close file failed.\n"
                          "Error: Close file failed.\a\n"
                          "Reason: No space left on device\n");
    EXPECT_EQ(output.out, "");
    EXPECT_EQ(open_file_count, before - 1);
}

TEST_F(CloseFailure, IsExplainedByItsOwnErrorWhateverTheReportDidToIt)
{
    SKIP_WITHOUT_FULL_DEVICE();
    std::FILE *const stream = open_full_device();
    if (stream == nullptr) {
        GTEST_SKIP() << "no device that is always full";
    }
    set_message_hook(errno_changing_hook);
    const CapturedOutput output = capture_output([=] { EXPECT_EQ(close_file(stream), -1); });
    EXPECT_EQ(output.err, "Error: Close file failed.\nReason: No space left on device\n");
}

TEST_F(CloseFailure, ReachesTheMessageHookAtLevelNineWithoutANewline)
{
    SKIP_WITHOUT_FULL_DEVICE();
    std::FILE *const stream = open_full_device();
    if (stream == nullptr) {
        GTEST_SKIP() << "no device that is always full";
    }
    set_message_hook(collecting_hook);
    capture_output([=] { close_file(stream); });
    const std::vector<std::pair<int, std::string>> expected = {{9, "Close file failed."}};
    EXPECT_EQ(messages, expected);
}

// The report goes to the print stream, the reason to standard error all the same.
TEST_F(CloseFailure, ExplainsItselfOnStandardErrorAlsoWithAnotherPrintStream)
{
    SKIP_WITHOUT_FULL_DEVICE();
    std::FILE *const stream = open_full_device();
    if (stream == nullptr) {
        GTEST_SKIP() << "no device that is always full";
    }
    set_message_hook(collecting_hook);
    set_print_stream(stdout);
    const CapturedOutput output = capture_output([=] { close_file(stream); });
    set_print_stream(nullptr);
    EXPECT_EQ(output.out, "Error: Close file failed.\n");
    EXPECT_EQ(output.err, "Reason: No space left on device\n");
}

TEST_F(CloseFailure, SaysNothingWhenTheStreamCloses)
{
    const CapturedOutput output = capture_output([&] {
        EXPECT_EQ(close_file(open_file(directory.path("x").c_str(), "w", 0)), 0);
        EXPECT_EQ(close_file(nullptr), 0);
    });
    EXPECT_EQ(output.out + output.err, "");
}

} // namespace
