#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <vector>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/error/facility_test.h"

namespace {

class ReportMessage : public FacilityTest {};

struct HookCall {
    int level;
    std::string text;
};

std::vector<HookCall> hook_calls;

int noting_hook(int level, const char *text)
{
    hook_calls.push_back({level, text});
    return 4711;
}

std::string printed_by(int level, const std::string &text)
{
    return capture_output([&] { report_message(level, "%s", text.c_str()); }).err;
}

struct LevelCase {
    int level;
    const char *line; // through the print stream
    const char *hook; // behind it, from the message hook
};

// clang-format off
const LevelCase level_cases[] = {
    {0, "Log: disk\n", ""},
    {1, ": disk\n", "disk\n"},
    {2, "Info: disk\n", "Info: disk\n"},
    {3, "Note: disk\n", "Note: disk\n"},
    {4, "Info: disk\n", "Info: disk\x07\n"},
    {5, "Note: disk\n", "Note: disk\x07\n"},
    {6, ": disk\n", "\x07" "disk\n"},
    {7, "Alert: disk\n", "Alert: disk\x07\n"},
    {8, "Warning: disk\n", "Warning: disk\x07\n"},
    {9, "Error: disk\n", "Error: disk\x07\n"},
};
// clang-format on

const int unknown_levels[] = {-1,  11,   12,      255,         256,          1000,   -10,
                              -11, -255, INT_MIN, INT_MIN + 1, INT_MIN + 10, INT_MAX};

TEST_F(ReportMessage, PrintsTheLineAndThenTheHooksLineOfEveryLevel)
{
    for (const LevelCase &c : level_cases) {
        EXPECT_EQ(printed_by(c.level, "disk"), std::string(c.line) + c.hook) << c.level;
    }
}

TEST_F(ReportMessage, WritesNothingToStandardOutputByDefault)
{
    for (const LevelCase &c : level_cases) {
        EXPECT_EQ(capture_output([&] { report_message(c.level, "disk"); }).out, "") << c.level;
    }
}

TEST_F(ReportMessage, PrintsFailedOpenAsTheLineAnEmptyLineAndTheHooksLine)
{
    const CapturedOutput output = capture_output(
        [] { report_message(9, "Open of %s failed: %s\n", "/tmp/x", "Permission denied"); });
    EXPECT_EQ(output.err, "Error: Open of /tmp/x failed: Permission denied\n"
                          "\n"
                          "Error: Open of /tmp/x failed: Permission denied\x07\n");
    EXPECT_EQ(output.out, "");
}

TEST_F(ReportMessage, TakesALevelOutsideTheTableAsAWarning)
{
    for (const int level : unknown_levels) {
        EXPECT_EQ(printed_by(level, "disk"), "Warning: disk\nWarning: disk\x07\n") << level;
    }
}

TEST_F(ReportMessage, HandsTheHookLevelEightForALevelOutsideTheTable)
{
    set_message_hook(noting_hook);
    for (const int level : unknown_levels) {
        hook_calls.clear();
        printed_by(level, "disk");
        ASSERT_EQ(hook_calls.size(), 1U) << level;
        EXPECT_EQ(hook_calls[0].level, 8) << level;
    }
}

TEST_F(ReportMessage, HandsTheHookTheLevelAndTheTextWithoutLabelWithItsNewlines)
{
    set_message_hook(noting_hook);
    for (int level = 1; level <= 10; ++level) {
        hook_calls.clear();
        printed_by(level, "disk\r\n\n");
        ASSERT_EQ(hook_calls.size(), 1U) << level;
        EXPECT_EQ(hook_calls[0].level, level);
        EXPECT_EQ(hook_calls[0].text, "disk\r\n\n") << level;
    }
}

TEST_F(ReportMessage, NeverCallsTheHookAtLevelZero)
{
    set_message_hook(noting_hook);
    hook_calls.clear();
    EXPECT_EQ(printed_by(0, "disk"), "Log: disk\n");
    EXPECT_TRUE(hook_calls.empty());
}

TEST_F(ReportMessage, ReturnsTheHooksResultAtLevelsOneToTen)
{
    set_message_hook(noting_hook);
    for (int level = 1; level <= 10; ++level) {
        int result = 0;
        capture_output([&] { result = report_message(level, "disk"); });
        EXPECT_EQ(result, 4711) << level;
    }
}

TEST_F(ReportMessage, ReturnsTheLengthOfTheRecordAtLevelZero)
{
    set_message_hook(noting_hook);
    int result = 0;
    capture_output([&] { result = report_message(0, "disk\r\n\n"); });
    EXPECT_EQ(result, 24 + 2 + 9); // date, ": ", "Log: disk" without all that ends the line
}

TEST_F(ReportMessage, CountsOneForEveryLevel)
{
    set_message_hook(noting_hook);
    for (int level = -1; level <= 11; ++level) {
        const std::int32_t before = message_count();
        printed_by(level, "disk");
        EXPECT_EQ(message_count(), before + 1) << level;
    }
}

TEST_F(ReportMessage, CountsOnlyAfterTheHookHasReturned)
{
    static std::int32_t count_in_hook;
    set_message_hook([](int, const char *) -> int {
        count_in_hook = message_count();
        return 0;
    });
    const std::int32_t before = message_count();
    printed_by(9, "disk");
    EXPECT_EQ(count_in_hook, before);
    EXPECT_EQ(message_count(), before + 1);
}

TEST_F(ReportMessage, DoesNotCountACallThatAHookLeavesByAnException)
{
    set_message_hook([](int, const char *) -> int { throw 5; });
    const std::int32_t before = message_count();
    EXPECT_THROW(printed_by(9, "disk"), int);
    EXPECT_EQ(message_count(), before);
}

TEST_F(ReportMessage, CountsBothMessagesWhenAHookReportsOneItself)
{
    set_message_hook([](int level, const char *text) -> int {
        return level == 9 ? report_message(2, "about %s", text) : 0;
    });
    const std::int32_t before = message_count();
    EXPECT_EQ(printed_by(9, "disk"), "Error: disk\nInfo: about disk\n");
    EXPECT_EQ(message_count(), before + 2);
}

TEST_F(ReportMessage, DoesNotTakePercentSignsOfTheExpandedTextForConversions)
{
    EXPECT_EQ(printed_by(9, "100%n %s %5d %%\n"),
              "Error: 100%n %s %5d %%\n\nError: 100%n %s %5d %%\x07\n");
}

TEST_F(ReportMessage, ExpandsItsArgumentsInOrder)
{
    const CapturedOutput output =
        capture_output([] { report_message(2, "%d%% of %s, %c", 12, "it", 'x'); });
    EXPECT_EQ(output.err, "Info: 12% of it, x\nInfo: 12% of it, x\n");
}

TEST_F(ReportMessage, PassesBytesAboveAsciiThrough)
{
    EXPECT_EQ(printed_by(9, "\x80\xff\xc3\x28"),
              "Error: \x80\xff\xc3\x28\nError: \x80\xff\xc3\x28\x07\n");
}

TEST_F(ReportMessage, PrintsTheLabelAloneForAnEmptyText)
{
    EXPECT_EQ(printed_by(9, ""), "Error: \nError: \x07\n");
    EXPECT_EQ(printed_by(1, ""), ": \n\n");
    EXPECT_EQ(printed_by(6, ""), ": \n\x07\n");
}

TEST_F(ReportMessage, KeepsThreeNewlinesInTheLineAndDropsThemInTheHooksLine)
{
    EXPECT_EQ(printed_by(9, "disk\n\n\n"), "Error: disk\n\n\n\nError: disk\x07\n");
}

TEST_F(ReportMessage, KeepsACarriageReturnInBothLines)
{
    EXPECT_EQ(printed_by(9, "disk\r\n"), "Error: disk\r\n\nError: disk\r\x07\n");
}

TEST_F(ReportMessage, PrintsTheLineWithTheIndentAndTheHooksLineWithoutIt)
{
    set_print_indent(3);
    EXPECT_EQ(printed_by(9, "disk\n"), "...Error: disk\n...\nError: disk\x07\n");
}

TEST_F(ReportMessage, DoesNotRecordTheIndent)
{
    set_print_indent(30);
    int result = 0;
    capture_output([&] { result = report_message(0, "disk"); });
    EXPECT_EQ(result, 24 + 2 + 9);
}

TEST_F(ReportMessage, PrintsTheLineToThePrintStreamAndTheHooksLineToStandardError)
{
    set_print_stream(stdout);
    const CapturedOutput output = capture_output([] { report_message(9, "disk"); });
    EXPECT_EQ(output.out, "Error: disk\n");
    EXPECT_EQ(output.err, "Error: disk\x07\n");
}

TEST_F(ReportMessage, HasPrintedTheLineBeforeTheHookIsCalled)
{
    set_message_hook([](int, const char *) -> int { return std::fputs("[hook]", stderr); });
    EXPECT_EQ(printed_by(9, "disk"), "Error: disk\n[hook]");
}

TEST_F(ReportMessage, GoesThroughTheHookInForceWhenTheLineHasBeenPrinted)
{
    set_message_hook(test_message_hook);
    const CapturedOutput output = capture_output([] { report_message(4, "disk\n"); });
    EXPECT_EQ(output.err, "Info: disk\n\n");
    EXPECT_EQ(output.out, "CORVELLATESTInfo: disk\x07\nENDCORVELLATEST\n");
}

TEST_F(ReportMessage, IgnoresTheOutputHook)
{
    set_output_hook([](const char *, const char *) -> int { std::abort(); });
    EXPECT_EQ(printed_by(2, "disk"), "Info: disk\nInfo: disk\n");
}

class FatalMessage : public FacilityTest {
protected:
    struct Notes {
        std::int32_t count_at_exit;
        bool left_by_exit;
        bool came_back;
    };

    FatalMessage()
        : notes(static_cast<Notes *>(mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE,
                                          MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
        shared_notes = notes;
    }
    ~FatalMessage() override
    {
        munmap(notes, sizeof(Notes));
    }

    static void note_the_exit()
    {
        shared_notes->left_by_exit = true;
        shared_notes->count_at_exit = message_count();
    }

    Notes *const notes;
    static Notes *shared_notes;
};

FatalMessage::Notes *FatalMessage::shared_notes;

TEST_F(FatalMessage, ExitsWithStatusOneAfterPrintingBothLines)
{
    const ChildResult child = run_in_child([this] {
        report_message(10, "no disk\n");
        notes->came_back = true;
    });
    EXPECT_EQ(child.exit_status, 1);
    EXPECT_EQ(child.signal, 0);
    EXPECT_EQ(child.err, "Fatal Error: no disk\n\nFatal Error: no disk\x07\n");
    EXPECT_EQ(child.out, "");
    EXPECT_FALSE(notes->came_back);
}

TEST_F(FatalMessage, DoesNotCount)
{
    const std::int32_t before = message_count();
    run_in_child([] {
        std::atexit(note_the_exit);
        report_message(10, "no disk\n");
    });
    ASSERT_TRUE(notes->left_by_exit);
    EXPECT_EQ(notes->count_at_exit, before);
}

TEST_F(FatalMessage, LetsOrdinaryOutputOfTheProgramThrough)
{
    const ChildResult child = run_in_child([] {
        std::fputs("not yet flushed", stdout);
        report_message(10, "no disk\n");
    });
    EXPECT_EQ(child.exit_status, 1);
    EXPECT_EQ(child.out, "not yet flushed");
}

TEST_F(FatalMessage, ComesBackAndCountsUnderTheTestHook)
{
    set_message_hook(test_message_hook);
    const std::int32_t before = message_count();
    const CapturedOutput output = capture_output([] { report_message(10, "no disk\n"); });
    EXPECT_EQ(message_count(), before + 1);
    EXPECT_EQ(output.out, "CORVELLATESTFatal Error: no disk\x07\nENDCORVELLATEST\n");
    EXPECT_EQ(output.err, "Fatal Error: no disk\n\n");
}

TEST_F(FatalMessage, EndsTheProcessAtNoOtherLevel)
{
    const ChildResult child = run_in_child([] {
        for (int level = 0; level < 10; ++level) {
            report_message(level, "disk");
        }
        for (const int level : unknown_levels) {
            report_message(level, "disk");
        }
        std::_Exit(77);
    });
    EXPECT_EQ(child.exit_status, 77);
}

} // namespace
