/// \file
/// The program that prints the lists.
#include <cstdio>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/harness/capture.h"
#include "tests/harness/full_device.h"
#include "tests/tool/generate/lists_main.h"
#include "tool/generate/lists.h"

namespace {

using namespace corvella;

int lists_main_with(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "corvella_lists");
    std::vector<char *> vector;
    for (std::string &argument : arguments) {
        vector.push_back(argument.data());
    }
    vector.push_back(nullptr);
    return lists_main(static_cast<int>(arguments.size()), vector.data());
}

/// The exit status with standard output on a full device, buffered as \p mode says.
int status_on_full_device(int mode)
{
    return run_in_child([mode] {
               if (std::freopen("/dev/full", "w", stdout) == nullptr) {
                   _exit(99);
               }
               std::setvbuf(stdout, nullptr, mode, 1 << 16);
               _exit(lists_main_with({"bash"}));
           })
        .exit_status;
}

TEST(ListsProgram, PrintsTheListThatItsArgumentNames)
{
    const struct {
        const char *name;
        std::string text;
    } lists[] = {
        {"manual", manual_lists()}, {"bash", bash_completion()}, {"zsh", zsh_completion()}};
    for (const auto &list : lists) {
        int status = -1;
        const CapturedOutput output =
            capture_output([&] { status = lists_main_with({list.name}); });
        EXPECT_EQ(status, 0) << list.name;
        EXPECT_EQ(output.out, list.text) << list.name;
        EXPECT_EQ(output.err, "") << list.name;
    }
}

TEST(ListsProgram, TellsItsUseWhenItIsNotCalledWithOneKind)
{
    const std::vector<std::string> wrong[] = {{},          {"fish"},        {""},
                                              {"manuals"}, {"bash", "zsh"}, {"nonsense", "bash"}};
    for (const std::vector<std::string> &arguments : wrong) {
        int status = -1;
        const CapturedOutput output = capture_output([&] { status = lists_main_with(arguments); });
        EXPECT_EQ(status, 2) << arguments.size();
        EXPECT_EQ(output.out, "") << arguments.size();
        EXPECT_EQ(output.err, "Usage: corvella_lists manual|bash|zsh\n") << arguments.size();
    }
}

// Unbuffered it is the writing that fails, and fully buffered the flushing of what was written.
TEST(ListsProgram, FailsWhenTheListIsNotWritten)
{
    SKIP_WITHOUT_FULL_DEVICE();
    EXPECT_EQ(status_on_full_device(_IONBF), 1);
    EXPECT_EQ(status_on_full_device(_IOFBF), 1);
}

} // namespace
