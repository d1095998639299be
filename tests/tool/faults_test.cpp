// What the program says and leaves when something fails that no arrangement around the program
// makes fail. The linker routes some calls of the tool's own objects through this file.
#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/error.h"
#include "tests/harness/temporary_directory.h"
#include "tool/command_line.h"
#include "tool/output_file.h"

namespace {

using namespace corvella;

using Names = std::vector<std::string>;

std::string failing;      // the name of the call that fails
int descriptor_of_fdopen; // what the last one was given
std::string messages;

bool fails(const char *name, int error_number)
{
    if (failing != name) {
        return false;
    }
    errno = error_number;
    return true;
}

int record_message(int level, const char *text)
{
    messages += std::to_string(level) + ": " + text + "\n";
    return 0;
}

class OutputFileFault : public testing::Test {
protected:
    OutputFileFault() : hook_(set_message_hook(record_message)), stream_(get_print_stream())
    {
        set_print_stream(null_device_);
        failing.clear();
        messages.clear();
        directory_.write("page", "old");
    }
    ~OutputFileFault() override
    {
        failing.clear();
        set_message_hook(hook_);
        set_print_stream(stream_);
        std::fclose(null_device_);
    }

    std::string page() const
    {
        return directory_.path("page");
    }

    TemporaryDirectory directory_;

private:
    std::FILE *null_device_ = std::fopen("/dev/null", "w");
    MessageHook hook_;
    std::FILE *stream_;
};

} // namespace

// The names that the linker's option --wrap gives to the calls.
extern "C" {
std::FILE *__real_fdopen(int descriptor, const char *mode);
std::FILE *__wrap_fdopen(int descriptor, const char *mode);
int __real_fclose(std::FILE *file);
int __wrap_fclose(std::FILE *file);
ssize_t __real_readlink(const char *path, char *target, std::size_t size);
ssize_t __wrap_readlink(const char *path, char *target, std::size_t size);
}

std::FILE *__wrap_fdopen(int descriptor, const char *mode)
{
    descriptor_of_fdopen = descriptor;
    return fails("fdopen", ENOMEM) ? nullptr : __real_fdopen(descriptor, mode);
}

int __wrap_fclose(std::FILE *file)
{
    const int result = __real_fclose(file);
    return fails("fclose", EIO) ? EOF : result;
}

ssize_t __wrap_readlink(const char *path, char *target, std::size_t size)
{
    if (failing != "readlink") {
        return __real_readlink(path, target, size);
    }
    for (std::size_t i = 0; i < size; ++i) {
        target[i] = 'x';
    }
    return static_cast<ssize_t>(size); // cut, as it may be
}

TEST_F(OutputFileFault, WithoutAStreamLeavesTheOldFileAndClosesTheNewOne)
{
    failing = "fdopen";
    EXPECT_FALSE(write_output_file(page().c_str(), "new"));
    EXPECT_EQ(messages, "9: Write of " + page() + " failed: Cannot allocate memory\n");
    EXPECT_EQ(directory_.read("page"), "old");
    EXPECT_EQ(directory_.names(), Names{"page"});
    EXPECT_EQ(close(descriptor_of_fdopen), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(OutputFileFault, OfTheLastMomentLeavesTheOldFile)
{
    failing = "fclose";
    EXPECT_FALSE(write_output_file(page().c_str(), "new"));
    EXPECT_EQ(messages, "9: Write of " + page() + " failed: Input/output error\n");
    EXPECT_EQ(directory_.read("page"), "old");
    EXPECT_EQ(directory_.names(), Names{"page"});
}

TEST_F(OutputFileFault, OfADeviceIsReportedToo)
{
    failing = "fclose";
    EXPECT_FALSE(write_output_file("/dev/null", "new"));
    EXPECT_EQ(messages, "9: Write of /dev/null failed: Input/output error\n");
}

TEST_F(OutputFileFault, IsTheFirstOneThatIsReported)
{
    failing = "fclose";
    EXPECT_FALSE(write_output_file("/dev/full", "new"));
    EXPECT_EQ(messages, "9: Write of /dev/full failed: No space left on device\n");
}

TEST_F(OutputFileFault, OfALinkThatDoesNotFitReplacesTheLink)
{
    ASSERT_EQ(symlink("page", directory_.path("link").c_str()), 0);
    failing = "readlink";
    EXPECT_TRUE(write_output_file(directory_.path("link").c_str(), "new"));
    EXPECT_EQ(directory_.read("link"), "new");
    EXPECT_EQ(directory_.read("page"), "old");
}

TEST(OutputFile, LeavesTheCreationMaskAsItIs)
{
    const TemporaryDirectory directory;
    const mode_t usual = umask(027);
    EXPECT_TRUE(write_output_file(directory.path("page").c_str(), "new"));
    EXPECT_EQ(umask(usual), 027U);
}

// Some systems start a program so when whoever starts it gives no arguments at all.
TEST(CommandLineFault, WithoutEvenTheProgramsNameIsAWrongOne)
{
    char *vector[] = {nullptr};
    command_line line;
    EXPECT_FALSE(read_command_line(0, vector, line));
    EXPECT_EQ(line.command, nullptr);
}
