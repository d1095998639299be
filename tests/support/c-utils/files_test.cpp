#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

#include "support/c-utils.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

static_assert(OPEN_FAIL_FATAL == 1 && OPEN_FAIL_REPORT == 2);
static_assert(std::is_same_v<decltype(open_file_count), std::int32_t>);
static_assert(std::is_same_v<decltype(file_opened_for_reading), std::int32_t>);

// Read before any test has opened a file.
const std::int32_t count_at_start = open_file_count;
const std::int32_t flag_at_start = file_opened_for_reading;

/// Sets the file-creation mask for as long as it lives.
class CreationMask {
public:
    explicit CreationMask(mode_t mask) : previous_(umask(mask)) {}
    CreationMask(const CreationMask &) = delete;
    CreationMask &operator=(const CreationMask &) = delete;
    ~CreationMask()
    {
        umask(previous_);
    }

private:
    mode_t previous_;
};

class OpenFile : public testing::Test {
protected:
    TemporaryDirectory directory;

    void open_and_close(const std::string &path, const char *mode)
    {
        std::FILE *const stream = open_file(path.c_str(), mode, 0);
        ASSERT_NE(stream, nullptr) << path;
        EXPECT_EQ(close_file(stream), 0);
    }
};

class CloseFile : public OpenFile {};

TEST(FileState, StartsAtZero)
{
    EXPECT_EQ(count_at_start, 0);
    EXPECT_EQ(flag_at_start, 0);
}

TEST_F(OpenFile, GivesANewFileAllPermissionsToReadAndWriteWhateverTheMask)
{
    int number = 0;
    for (const mode_t mask : {0000u, 0022u, 0027u, 0077u, 0777u}) {
        for (const char *const mode : {"w", "a", "w+", "a+", "wb", "ab", "wx"}) {
            SCOPED_TRACE(std::string(mode) + " under mask " + std::to_string(mask));
            const CreationMask creation_mask(mask);
            const std::string path = directory.path("x" + std::to_string(++number));
            open_and_close(path, mode);
            EXPECT_EQ(permissions_of(path), 0666u);
        }
    }
}

TEST_F(OpenFile, GivesAnExistingFileAllPermissionsToReadAndWrite)
{
    const std::string path = make_file(directory.path("x"));
    for (const char *const mode : {"w", "a", "w+", "a+"}) {
        for (const mode_t before : {0600u, 0200u, 0755u, 06755u, 0777u}) {
            SCOPED_TRACE(std::string(mode) + " of " + std::to_string(before));
            // A descriptor to write with is all that "w" and "a" need; the others read too.
            if (mode[1] == '+' && before == 0200) {
                continue;
            }
            ASSERT_EQ(chmod(path.c_str(), before), 0);
            open_and_close(path, mode);
            EXPECT_EQ(permissions_of(path), 0666u);
        }
    }
}

TEST_F(OpenFile, GivesThePermissionsWhileTheFileIsStillOpen)
{
    const CreationMask mask(0077);
    const std::string path = directory.path("x");
    std::FILE *const stream = open_file(path.c_str(), "w", 0);
    EXPECT_EQ(permissions_of(path), 0666u);
    close_file(stream);
}

TEST_F(OpenFile, GivesThePermissionsToTheTargetOfALink)
{
    const std::string path = make_file(directory.path("x"));
    const std::string link = directory.path("link");
    ASSERT_EQ(chmod(path.c_str(), 0600), 0);
    ASSERT_EQ(symlink("x", link.c_str()), 0);
    open_and_close(link, "a");
    EXPECT_EQ(permissions_of(path), 0666u);
}

TEST_F(OpenFile, LeavesThePermissionsOfAFileThatItReads)
{
    const std::string path = make_file(directory.path("x"));
    for (const char *const mode : {"r", "r+", "rb"}) {
        for (const mode_t before : {0600u, 0640u, 0777u}) {
            ASSERT_EQ(chmod(path.c_str(), before), 0);
            open_and_close(path, mode);
            EXPECT_EQ(permissions_of(path), before);
        }
    }
}

TEST_F(OpenFile, ReturnsAnOrdinaryStream)
{
    const std::string path = make_file(directory.path("x"), "one");
    std::FILE *stream = open_file(path.c_str(), "a", 0);
    EXPECT_GE(std::fputs(" two", stream), 0);
    EXPECT_EQ(close_file(stream), 0);
    EXPECT_EQ(contents_of(path), "one two");

    stream = open_file(path.c_str(), "r", 0);
    char text[16] = {};
    EXPECT_EQ(std::fread(text, 1, sizeof text, stream), 7u);
    EXPECT_STREQ(text, "one two");
    EXPECT_EQ(close_file(stream), 0);

    stream = open_file(path.c_str(), "w", 0);
    EXPECT_EQ(close_file(stream), 0);
    EXPECT_EQ(contents_of(path), "");
}

TEST_F(OpenFile, CountsEveryOpenStream)
{
    const std::int32_t before = open_file_count;
    const std::string path = directory.path("x");
    std::vector<std::FILE *> streams;
    for (const char *const mode : {"w", "a", "r", "r+"}) {
        streams.push_back(open_file(path.c_str(), mode, 0));
        EXPECT_EQ(open_file_count, before + static_cast<std::int32_t>(streams.size()));
    }
    while (!streams.empty()) {
        close_file(streams.back());
        streams.pop_back();
        EXPECT_EQ(open_file_count, before + static_cast<std::int32_t>(streams.size()));
    }
}

TEST_F(OpenFile, DoesNotCountAFailure)
{
    const std::int32_t before = open_file_count;
    for (const char *const mode : {"w", "a", "r"}) {
        EXPECT_EQ(open_file("/nonexistent/x", mode, 0), nullptr);
        EXPECT_EQ(open_file_count, before);
    }
}

TEST_F(OpenFile, NotesTheFirstReadingForGood)
{
    const std::string path = directory.path("x");
    file_opened_for_reading = 0;
    open_and_close(path, "w");
    open_and_close(path, "a");
    open_and_close(path, "w+");
    EXPECT_EQ(open_file("/nonexistent/x", "r", 0), nullptr);
    EXPECT_EQ(file_opened_for_reading, 0);
    open_and_close(path, "r");
    EXPECT_EQ(file_opened_for_reading, 1);
    open_and_close(path, "w");
    EXPECT_EQ(open_file("/nonexistent/x", "r", 0), nullptr);
    open_and_close(path, "r");
    EXPECT_EQ(file_opened_for_reading, 1);
}

TEST_F(OpenFile, NotesNoReadingAfterAFailure)
{
    for (const char *const mode : {"r", "rb", "r+", "w", "a"}) {
        file_opened_for_reading = 0;
        EXPECT_EQ(open_file("/nonexistent/x", mode, 0), nullptr);
        EXPECT_EQ(file_opened_for_reading, 0) << mode;
    }
}

TEST_F(OpenFile, NeverTakesTheNoteOfAReadingBack)
{
    const std::string path = make_file(directory.path("x"));
    open_and_close(path, "r");
    for (const char *const mode : {"w", "a", "w+", "a+", "r", "r+"}) {
        open_and_close(path, mode);
        EXPECT_EQ(file_opened_for_reading, 1) << mode;
        EXPECT_EQ(open_file("/nonexistent/x", mode, 0), nullptr);
        EXPECT_EQ(file_opened_for_reading, 1) << mode;
    }
    EXPECT_EQ(close_file(nullptr), 0);
    EXPECT_EQ(file_opened_for_reading, 1);
    EXPECT_EQ(open_file_with_fallback("/nonexistent/x", "/nonexistent/y", "r", 0), nullptr);
    EXPECT_EQ(file_opened_for_reading, 1);
}

TEST_F(OpenFile, TakesEveryModeThatBeginsWithRForReading)
{
    const std::string path = make_file(directory.path("x"));
    for (const char *const mode : {"r", "rb", "r+", "rb+"}) {
        SCOPED_TRACE(mode);
        file_opened_for_reading = 0;
        open_and_close(path, mode);
        EXPECT_EQ(file_opened_for_reading, 1);
    }
}

TEST_F(OpenFile, OpensFilesOfTwoGibibytesAndMore)
{
    const std::string path = make_file(directory.path("large"));
    if (truncate(path.c_str(), static_cast<off_t>(3) << 30) != 0) {
        GTEST_SKIP() << "no room for a file with holes";
    }
    for (const char *const mode : {"r", "r+", "a", "w"}) {
        SCOPED_TRACE(mode);
        open_and_close(path, mode);
    }
}

TEST_F(CloseFile, DoesNothingForNull)
{
    const std::int32_t before = open_file_count;
    for (const std::int32_t note : {0, 1}) {
        file_opened_for_reading = note;
        EXPECT_EQ(close_file(nullptr), 0);
        EXPECT_EQ(open_file_count, before);
        EXPECT_EQ(file_opened_for_reading, note);
    }
}

// Deliberate: it does not ask where the stream comes from.
TEST_F(CloseFile, CountsDownForAStreamOfAnotherOriginToo)
{
    const std::int32_t before = open_file_count;
    EXPECT_EQ(close_file(std::fopen("/dev/null", "r")), 0);
    EXPECT_EQ(open_file_count, before - 1);
    open_file_count = before;
}

TEST_F(CloseFile, WritesWhatWasBuffered)
{
    const std::string path = directory.path("x");
    std::FILE *const stream = open_file(path.c_str(), "w", 0);
    std::fputs("text", stream);
    EXPECT_EQ(close_file(stream), 0);
    EXPECT_EQ(contents_of(path), "text");
}

TEST_F(CloseFile, GivesTheDescriptorBack)
{
    const std::string path = directory.path("x");
    std::FILE *stream = open_file(path.c_str(), "w", 0);
    const int descriptor = fileno(stream);
    close_file(stream);
    stream = open_file(path.c_str(), "r", 0);
    EXPECT_EQ(fileno(stream), descriptor);
    close_file(stream);
}

} // namespace
