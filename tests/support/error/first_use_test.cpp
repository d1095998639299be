// The state before anything was set or printed. The tests of this program use the facility in
// child processes only, so that each of them finds it untouched.
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

#include "support/error.h"
#include "tests/harness/capture.h"

namespace {

int silent_message_hook(int, const char *)
{
    return 0;
}

int silent_output_hook(const char *, const char *)
{
    return 0;
}

/// \return whether \p condition holds in a fresh child process.
bool holds_in_child(bool (*condition)())
{
    return run_in_child([&] { std::_Exit(condition() ? 42 : 1); }).exit_status == 42;
}

TEST(FirstUse, FindsNoPrintStream)
{
    EXPECT_TRUE(holds_in_child([] { return get_print_stream() == nullptr; }));
}

TEST(FirstUse, FindsTheDefaultHooks)
{
    EXPECT_TRUE(holds_in_child(
        [] { return set_message_hook(silent_message_hook) == &default_message_hook; }));
    EXPECT_TRUE(
        holds_in_child([] { return set_output_hook(silent_output_hook) == &default_output_hook; }));
    EXPECT_TRUE(holds_in_child([] { return set_message_hook(nullptr) == &default_message_hook; }));
    EXPECT_TRUE(holds_in_child([] { return set_output_hook(nullptr) == &default_output_hook; }));
}

TEST(FirstUse, FindsNoMessagesCounted)
{
    EXPECT_TRUE(holds_in_child([] { return message_count() == 0; }));
}

TEST(FirstUse, OfTheRecorderReturnsALength)
{
    EXPECT_TRUE(holds_in_child([] { return record_timestamped_line("line") == 30; }));
}

TEST(FirstUse, ByPrintingSelectsStandardError)
{
    const ChildResult child = run_in_child([] {
        print_indented("a\nb\n");
        std::_Exit(get_print_stream() == stderr ? 42 : 1);
    });
    EXPECT_EQ(child.exit_status, 42);
    EXPECT_EQ(child.err, "a\nb\n"); // and there is no indent
    EXPECT_EQ(child.out, "");
}

TEST(FirstUse, ByAMessageSelectsStandardError)
{
    const ChildResult child = run_in_child([] {
        report_message(0, "disk");
        std::_Exit(get_print_stream() == stderr && message_count() == 1 ? 42 : 1);
    });
    EXPECT_EQ(child.exit_status, 42);
    EXPECT_EQ(child.err, "Log: disk\n");
}

TEST(FirstUse, ByARawMessageOrAHookLeavesThePrintStreamUnset)
{
    const ChildResult child = run_in_child([] {
        write_raw_message("raw\n", "tag");
        default_message_hook(2, "disk");
        std::_Exit(get_print_stream() == nullptr ? 42 : 1);
    });
    EXPECT_EQ(child.exit_status, 42);
    EXPECT_EQ(child.err, "raw\nInfo: disk\n");
}

TEST(FirstUse, BySettingNullSelectsStandardErrorBeforeAnythingIsPrinted)
{
    EXPECT_TRUE(holds_in_child([] {
        set_print_stream(nullptr);
        return get_print_stream() == stderr;
    }));
}

TEST(FirstUse, ByFailedAssertionNeedsNoSetUp)
{
    EXPECT_TRUE(holds_in_child([] {
        try {
            assertion_failed("a > b", "a.cpp", 1);
        } catch (const CorvellaAbortException &thrown) {
            return thrown.code == 5 && message_count() == 1;
        }
    }));
}

} // namespace
