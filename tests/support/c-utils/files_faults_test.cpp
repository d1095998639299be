// Each file call failing in turn, and the calls that are made at all.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/c-utils/file_calls.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

using Texts = std::vector<std::string>;

Texts called_back;

int collect(const char *path, std::intptr_t)
{
    called_back.emplace_back(path);
    return 0;
}

int throw_at_once(const char *, std::intptr_t)
{
    throw std::runtime_error("from the callback");
}

dirent entry_named(const std::string &name, unsigned char type = DT_REG)
{
    dirent entry = {};
    entry.d_type = type;
    name.copy(entry.d_name, sizeof entry.d_name - 1);
    return entry;
}

class FileFaults : public testing::Test {
protected:
    FileFaults()
    {
        set_message_hook(nullptr);
        set_print_stream(nullptr);
        called_back.clear();
        file_calls = {};
        file_calls.active = true;
    }
    ~FileFaults() override
    {
        file_calls = {};
    }

    static void make_fail(const char *call, int error)
    {
        file_calls.failing = {call};
        file_calls.error = error;
    }
    /// What \p action writes to standard error. The files of the capture itself are real.
    template <typename Action> static std::string errors_of(Action action)
    {
        file_calls.active = false;
        const CapturedOutput output = capture_output([&] {
            file_calls.active = true;
            action();
            file_calls.active = false;
        });
        file_calls.active = true;
        return output.err;
    }
};

class OpenFileFaults : public FileFaults {};
class CloseFileFaults : public FileFaults {};
class FileExistsFaults : public FileFaults {};
class RemovePathFaults : public FileFaults {};
class FileWalkFaults : public FileFaults {};

const std::vector<int> errors = {EACCES, EIO,    ELOOP,  EMFILE, ENAMETOOLONG,
                                 ENFILE, ENOENT, ENOMEM, ENOSPC, EROFS};

TEST_F(OpenFileFaults, ReportEveryErrorOfTheOpen)
{
    for (const int error : errors) {
        make_fail("fopen", error);
        const std::int32_t count = open_file_count;
        EXPECT_EQ(errors_of([] { EXPECT_EQ(open_file("p", "w", OPEN_FAIL_REPORT), nullptr); }),
                  reported("Error", std::string("Write of p failed at open: ") + strerror(error)));
        EXPECT_EQ(errors_of([] { EXPECT_EQ(open_file("p", "a", OPEN_FAIL_REPORT), nullptr); }),
                  reported("Error", std::string("Open of p failed: ") + strerror(error)));
        EXPECT_EQ(open_file_count, count);
    }
}

TEST_F(OpenFileFaults, TryOnceAndChangeNoPermissions)
{
    make_fail("fopen", EACCES);
    EXPECT_EQ(open_file("p", "w", 0), nullptr);
    EXPECT_EQ(file_calls.calls, Texts{"fopen p w"});
}

TEST_F(OpenFileFaults, AskForThePermissionsOnceOnlyAfterAWriteOrAppend)
{
    for (const char *const mode : {"w", "a", "r", "r+"}) {
        file_calls.calls.clear();
        std::FILE *const stream = open_file("p", mode, 0);
        Texts expected = {std::string("fopen p ") + mode};
        if (mode[0] != 'r') {
            expected.push_back("chmod p " + std::to_string(0666));
        }
        EXPECT_EQ(file_calls.calls, expected);
        close_file(stream);
    }
}

TEST_F(OpenFileFaults, DoNeitherForAModeOfAnotherLetter)
{
    file_opened_for_reading = 0;
    close_file(open_file("p", "x", 0));
    close_file(open_file("p", "+rwa", 0));
    const Texts expected = {"fopen p x", "fclose stream", "fopen p +rwa", "fclose stream"};
    EXPECT_EQ(file_calls.calls, expected);
    EXPECT_EQ(file_opened_for_reading, 0);
}

TEST_F(OpenFileFaults, ReturnTheStreamAlsoWhenThePermissionsCannotBeChanged)
{
    make_fail("chmod", EPERM);
    for (const char *const mode : {"w", "a"}) {
        for (const int flags : {0, OPEN_FAIL_REPORT + 0, OPEN_FAIL_FATAL + 0}) {
            const std::int32_t count = open_file_count;
            const std::string written = errors_of([=] {
                std::FILE *const stream = open_file("p", mode, flags);
                EXPECT_NE(stream, nullptr);
                EXPECT_EQ(open_file_count, count + 1);
                close_file(stream);
            });
            EXPECT_EQ(written, "");
        }
    }
}

TEST_F(OpenFileFaults, TryTheFallbackAfterThePathWithTheSameMode)
{
    make_fail("fopen", EACCES);
    EXPECT_EQ(open_file_with_fallback("p", "q", "r+", 0), nullptr);
    const Texts expected = {"fopen p r+", "fopen q r+"};
    EXPECT_EQ(file_calls.calls, expected);
}

TEST_F(CloseFileFaults, ExplainEveryErrorOfTheClose)
{
    for (const int error : {EIO, ENOSPC, EDQUOT, EINTR, EBADF}) {
        make_fail("fclose", error);
        std::FILE *const stream = open_file("p", "r", 0);
        const std::int32_t count = open_file_count;
        EXPECT_EQ(errors_of([=] { EXPECT_EQ(close_file(stream), -1); }),
                  std::string("Error: Close file failed.\nError: Close file failed.\a\nReason: ") +
                      strerror(error) + "\n");
        EXPECT_EQ(open_file_count, count - 1);
    }
}

TEST_F(CloseFileFaults, ExplainTheCloseAlsoWhenTheClockLeavesAnotherError)
{
    make_fail("fclose", EIO);
    file_calls.clock_changes_errno = true;
    std::FILE *const stream = open_file("p", "r", 0);
    EXPECT_EQ(errors_of([=] { EXPECT_EQ(close_file(stream), -1); }),
              std::string("Error: Close file failed.\nError: Close file failed.\a\nReason: ") +
                  strerror(EIO) + "\n");
}

TEST_F(CloseFileFaults, CloseOnce)
{
    make_fail("fclose", EINTR);
    std::FILE *const stream = open_file("p", "r", 0);
    file_calls.calls.clear();
    errors_of([=] { close_file(stream); });
    EXPECT_EQ(file_calls.calls, Texts{"fclose stream"});
}

TEST_F(CloseFileFaults, CallNothingForNull)
{
    EXPECT_EQ(close_file(nullptr), 0);
    EXPECT_EQ(file_calls.calls, Texts{});
}

TEST_F(FileExistsFaults, CallNothingForNullAndTheEmptyPath)
{
    EXPECT_EQ(file_exists(nullptr), 0);
    EXPECT_EQ(file_exists(""), 0);
    EXPECT_EQ(file_calls.calls, Texts{});
}

TEST_F(FileExistsFaults, AskOnceAndTakeEveryErrorForNothing)
{
    for (const int error : errors) {
        make_fail("stat", error);
        file_calls.calls.clear();
        EXPECT_EQ(file_exists("p"), 0);
        EXPECT_EQ(file_calls.calls, Texts{"stat p"});
    }
}

TEST_F(RemovePathFaults, CallNothingForNullAndTheEmptyPath)
{
    EXPECT_EQ(remove_path(nullptr), 0);
    EXPECT_EQ(remove_path(""), 0);
    EXPECT_EQ(file_calls.calls, Texts{});
}

TEST_F(RemovePathFaults, RemoveNothingWhoseStatusCannotBeRead)
{
    for (const int error : errors) {
        make_fail("lstat", error);
        file_calls.calls.clear();
        EXPECT_EQ(remove_path("p"), -1);
        EXPECT_EQ(errno, error);
        EXPECT_EQ(file_calls.calls, Texts{"lstat p"});
    }
}

// Deliberate: the directory's bit alone decides, which block devices and sockets have too.
TEST_F(RemovePathFaults, ChooseTheCallByTheDirectoryBitAlone)
{
    struct Case {
        mode_t mode;
        const char *call;
    };
    for (const Case &c :
         {Case{0x1000, "unlink p"}, Case{0x2000, "unlink p"}, Case{0x4000, "rmdir p"},
          Case{0x6000, "rmdir p"}, Case{0x8000, "unlink p"}, Case{0xA000, "unlink p"},
          Case{0xC000, "rmdir p"}}) {
        SCOPED_TRACE(c.mode);
        file_calls.mode = c.mode;
        file_calls.calls.clear();
        EXPECT_EQ(remove_path("p"), 0);
        const Texts expected = {"lstat p", c.call};
        EXPECT_EQ(file_calls.calls, expected);
    }
}

TEST_F(RemovePathFaults, LeaveTheErrorOfTheRemoval)
{
    for (const auto &[call, mode] : {std::pair{"unlink", S_IFREG}, std::pair{"rmdir", S_IFDIR}}) {
        file_calls.mode = static_cast<mode_t>(mode);
        for (const int error : errors) {
            make_fail(call, error);
            EXPECT_EQ(errors_of([=] {
                          EXPECT_EQ(remove_path("p"), -1);
                          EXPECT_EQ(errno, error);
                      }),
                      "");
        }
    }
}

TEST_F(FileWalkFaults, ReportEveryErrorOfTheDirectory)
{
    file_calls.entries = {entry_named("a")};
    for (const int error : errors) {
        make_fail("opendir", error);
        file_calls.calls.clear();
        file_calls.clock_changes_errno = true;
        EXPECT_EQ(
            errors_of([] { for_each_regular_file("d", collect, 0); }),
            reported("Warning", std::string("Can't open directory d: error ") + strerror(error)));
        EXPECT_EQ(file_calls.calls, Texts{"opendir d"});
    }
    EXPECT_EQ(called_back, Texts{});
}

TEST_F(FileWalkFaults, AskForTheStatusOfEveryEntryButTheTwoThatEveryDirectoryHas)
{
    file_calls.entries = {entry_named("."), entry_named("..."), entry_named(".."),
                          entry_named(".a")};
    for_each_regular_file("d", collect, 0);
    const Texts calls = {"opendir d", "stat d/...", "stat d/.a", "readdir end",
                         "closedir directory"};
    EXPECT_EQ(file_calls.calls, calls);
}

TEST_F(FileWalkFaults, PassOverAnEntryWhoseStatusCannotBeRead)
{
    // The one before it is a regular file, so that a status left over would be taken for its own.
    file_calls.entries = {entry_named("a"), entry_named("b"), entry_named("c")};
    file_calls.modes = {{"d/b", 0}};
    EXPECT_EQ(errors_of([] { for_each_regular_file("d", collect, 0); }), "");
    const Texts expected = {"d/a", "d/c"};
    EXPECT_EQ(called_back, expected);
}

TEST_F(FileWalkFaults, PassOverEveryEntryWhenNoStatusCanBeRead)
{
    file_calls.entries = {entry_named("a"), entry_named("b")};
    for (const int error : errors) {
        make_fail("stat", error);
        file_calls.next_entry = 0;
        EXPECT_EQ(errors_of([] { for_each_regular_file("d", collect, 0); }), "");
    }
    EXPECT_EQ(called_back, Texts{});
}

TEST_F(FileWalkFaults, CompareTheWholeTypeOfAFile)
{
    struct Case {
        mode_t mode;
        bool regular;
    };
    file_calls.entries = {entry_named("a")};
    for (const Case &c :
         {Case{0x1000, false}, Case{0x2000, false}, Case{0x4000, false}, Case{0x6000, false},
          Case{0x8000, true}, Case{0xA000, false}, Case{0xC000, false}}) {
        SCOPED_TRACE(c.mode);
        file_calls.mode = c.mode;
        file_calls.next_entry = 0;
        called_back.clear();
        for_each_regular_file("d", collect, 0);
        EXPECT_EQ(called_back, c.regular ? Texts{"d/a"} : Texts{});
    }
}

TEST_F(FileWalkFaults, TrustTheStatusAndNotTheTypeInTheDirectory)
{
    file_calls.entries = {entry_named("a", DT_UNKNOWN), entry_named("b", DT_LNK),
                          entry_named("c", DT_DIR), entry_named("d", DT_REG)};
    file_calls.modes = {{"d/d", S_IFDIR}};
    for_each_regular_file("d", collect, 0);
    const Texts expected = {"d/a", "d/b", "d/c"};
    EXPECT_EQ(called_back, expected);
}

TEST_F(FileWalkFaults, TakeLargeInodeNumbers)
{
    file_calls.entries = {entry_named("a")};
    file_calls.entries[0].d_ino = static_cast<ino_t>(1) << 40;
    static_assert(sizeof(ino_t) == 8);
    for_each_regular_file("d", collect, 0);
    EXPECT_EQ(called_back, Texts{"d/a"});
}

TEST_F(FileWalkFaults, EndQuietlyWhenTheDirectoryCannotBeReadOn)
{
    file_calls.entries = {entry_named("a")};
    make_fail("readdir", EIO);
    EXPECT_EQ(errors_of([] { for_each_regular_file("d", collect, 0); }), "");
    EXPECT_EQ(called_back, Texts{"d/a"});
    EXPECT_EQ(file_calls.calls.back(), "closedir directory");
}

TEST_F(FileWalkFaults, CloseTheDirectoryOnceAfterAnException)
{
    file_calls.entries = {entry_named("a"), entry_named("b")};
    EXPECT_THROW(for_each_regular_file("d", throw_at_once, 0), std::runtime_error);
    const Texts calls = {"opendir d", "stat d/a", "closedir directory"};
    EXPECT_EQ(file_calls.calls, calls);
}

TEST_F(FileWalkFaults, SayNothingOfAFailedClose)
{
    file_calls.entries = {entry_named("a")};
    make_fail("closedir", EIO);
    EXPECT_EQ(errors_of([] { for_each_regular_file("d", collect, 0); }), "");
    EXPECT_EQ(called_back, Texts{"d/a"});
}

TEST_F(FileFaults, MakeNoCallThatKnowsNoLargeFiles)
{
    if (sizeof(long) > 4) {
        GTEST_SKIP() << "every call knows them here";
    }
    close_file(open_file("p", "w", 0));
    file_exists("p");
    remove_path("p");
    file_calls.entries = {entry_named("a")};
    for_each_regular_file("d", collect, 0);
    EXPECT_EQ(file_calls.narrow_calls, 0);
}

} // namespace
