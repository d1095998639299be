#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/error/facility_test.h"
#include "tests/support/error/message_lines.h"

namespace {

class Hooks : public FacilityTest {};
class DefaultMessageHook : public FacilityTest {};
class TestMessageHook : public FacilityTest {};
class OutputHooks : public FacilityTest {};
class WriteRawMessage : public FacilityTest {};

std::string hook_text;
std::string hook_tag;
int hook_count;

int noting_output_hook(const char *text, const char *tag)
{
    hook_text = text;
    hook_tag = tag;
    return ++hook_count;
}

int noting_message_hook(int, const char *text)
{
    hook_text = text;
    return ++hook_count;
}

TEST_F(Hooks, AreReturnedByTheNextSetter)
{
    EXPECT_EQ(set_output_hook(noting_output_hook), &default_output_hook);
    EXPECT_EQ(set_output_hook(test_output_hook), &noting_output_hook);
    EXPECT_EQ(set_output_hook(test_output_hook), &test_output_hook);
    EXPECT_EQ(set_message_hook(noting_message_hook), &default_message_hook);
    EXPECT_EQ(set_message_hook(test_message_hook), &noting_message_hook);
    EXPECT_EQ(set_message_hook(test_message_hook), &test_message_hook);
}

TEST_F(Hooks, GiveWayToTheDefaultsWhenSetToNull)
{
    set_output_hook(noting_output_hook);
    EXPECT_EQ(set_output_hook(nullptr), &noting_output_hook);
    EXPECT_EQ(set_output_hook(nullptr), &default_output_hook);
    set_message_hook(noting_message_hook);
    EXPECT_EQ(set_message_hook(nullptr), &noting_message_hook);
    EXPECT_EQ(set_message_hook(nullptr), &default_message_hook);
}

TEST_F(Hooks, AreSetIndependentlyOfEachOther)
{
    set_output_hook(noting_output_hook);
    EXPECT_EQ(set_message_hook(noting_message_hook), &default_message_hook);
    set_message_hook(nullptr);
    EXPECT_EQ(set_output_hook(nullptr), &noting_output_hook);
}

TEST_F(Hooks, StayInForceUntilTheyAreSetAgain)
{
    set_message_hook(noting_message_hook);
    hook_count = 0;
    capture_output([] {
        for (int i = 0; i < 50; ++i) {
            report_message(9, "disk");
        }
    });
    EXPECT_EQ(hook_count, 50);
}

TEST_F(Hooks, StayInForceWhenTheyAreSetTwice)
{
    for (int i = 0; i < 2; ++i) {
        set_message_hook(noting_message_hook);
        set_output_hook(noting_output_hook);
    }
    hook_count = 0;
    const CapturedOutput output = capture_output([] {
        write_raw_message("raw", "tag");
        report_message(9, "disk");
    });
    EXPECT_EQ(output.err, "Error: disk\n") << "the printed line alone";
}

TEST_F(Hooks, OfTheDefaultsWriteToStandardErrorAgainAfterNull)
{
    set_message_hook(noting_message_hook);
    set_message_hook(nullptr);
    set_output_hook(noting_output_hook);
    set_output_hook(nullptr);
    EXPECT_EQ(capture_output([] { report_message(2, "disk"); }).err, "Info: disk\nInfo: disk\n");
    EXPECT_EQ(capture_output([] { write_raw_message("raw", "tag"); }).err, "raw");
}

TEST_F(DefaultMessageHook, WritesTheLineAndOneNewlineToStandardError)
{
    for (const LineCase &c : line_cases) {
        if (c.level == 10) {
            continue; // ends the process
        }
        const CapturedOutput output =
            capture_output([&] { default_message_hook(c.level, c.text); });
        EXPECT_EQ(output.err, std::string(c.line) + "\n") << c.level;
        EXPECT_EQ(output.out, "") << c.level;
    }
}

TEST_F(DefaultMessageHook, KeepsAtMost1003Characters)
{
    for (const std::size_t length : {1002U, 1003U, 1004U, 1005U, 1023U, 2000U, 100000U}) {
        const std::string text = counting_text(length);
        const CapturedOutput output =
            capture_output([&] { default_message_hook(9, text.c_str()); });
        EXPECT_EQ(output.err, "Error: " + text.substr(0, 1003) + "\x07\n") << length;
    }
}

TEST_F(DefaultMessageHook, KeepsAtMost1003CharactersOfTheUnlabelledLevelsToo)
{
    const std::string text = counting_text(2000);
    EXPECT_EQ(capture_output([&] { default_message_hook(1, text.c_str()); }).err,
              counting_text(1003) + "\n");
    EXPECT_EQ(capture_output([&] { default_message_hook(6, text.c_str()); }).err,
              "\x07" + counting_text(1003) + "\n");
}

TEST_F(DefaultMessageHook, ExitsWithStatusOneAtLevelTen)
{
    const ChildResult child = run_in_child([] {
        default_message_hook(10, "no disk");
        std::_Exit(50);
    });
    EXPECT_EQ(child.exit_status, 1);
    EXPECT_EQ(child.err, "Fatal Error: no disk\x07\n");
    EXPECT_EQ(child.out, "");
}

TEST_F(DefaultMessageHook, DoesNotFollowThePrintStreamOrTheIndent)
{
    set_print_stream(stdout);
    set_print_indent(5);
    const CapturedOutput output = capture_output([] { default_message_hook(2, "a\nb"); });
    EXPECT_EQ(output.err, "Info: a\nb\n");
    EXPECT_EQ(output.out, "");
}

TEST_F(DefaultMessageHook, CalledDirectlyDoesNotCount)
{
    const std::int32_t before = message_count();
    capture_output([] { default_message_hook(2, "disk"); });
    EXPECT_EQ(message_count(), before);
}

TEST_F(TestMessageHook, FramesTheLineOnStandardOutput)
{
    for (const LineCase &c : line_cases) {
        const CapturedOutput output = capture_output([&] { test_message_hook(c.level, c.text); });
        EXPECT_EQ(output.out, "CORVELLATEST" + std::string(c.line) + "\nENDCORVELLATEST\n");
        EXPECT_EQ(output.err, "") << c.level;
    }
}

TEST_F(TestMessageHook, DoesNotEndTheProcessAtLevelTen)
{
    const CapturedOutput output = capture_output([] { test_message_hook(10, "no disk\n"); });
    EXPECT_EQ(output.out, "CORVELLATESTFatal Error: no disk\x07\nENDCORVELLATEST\n");
}

TEST_F(TestMessageHook, KeepsAtMost1003Characters)
{
    for (const std::size_t length : {1002U, 1003U, 1004U, 2000U, 100000U}) {
        const std::string text = counting_text(length);
        const CapturedOutput output = capture_output([&] { test_message_hook(10, text.c_str()); });
        EXPECT_EQ(output.out,
                  "CORVELLATESTFatal Error: " + text.substr(0, 1003) + "\x07\nENDCORVELLATEST\n");
    }
}

TEST_F(TestMessageHook, HasFlushedStandardOutput)
{
    const ChildResult child = run_in_child([] {
        test_message_hook(2, "disk");
        std::_Exit(0);
    });
    EXPECT_EQ(child.out, "CORVELLATESTInfo: disk\nENDCORVELLATEST\n");
}

TEST_F(OutputHooks, ByDefaultWriteTheTextUnchangedAndIgnoreTheTag)
{
    for (const std::string &text :
         {std::string("raw"), std::string("raw\n"), std::string("\r\n\n%s%n\x80\xff"),
          std::string(""), counting_text(200000)}) {
        const CapturedOutput output =
            capture_output([&] { default_output_hook(text.c_str(), "tag"); });
        EXPECT_EQ(output.err, text);
        EXPECT_EQ(output.out, "");
    }
}

TEST_F(OutputHooks, ByDefaultTakeANullTag)
{
    EXPECT_EQ(capture_output([] { default_output_hook("raw", nullptr); }).err, "raw");
}

TEST_F(OutputHooks, OfAutomatedRunsFrameTagAndTextOnStandardOutput)
{
    for (const std::string &text :
         {std::string("raw"), std::string("raw\n\n"), std::string("%s%n\x80\xff"), std::string(""),
          counting_text(200000)}) {
        const CapturedOutput output =
            capture_output([&] { test_output_hook(text.c_str(), "%tag"); });
        EXPECT_EQ(output.out, "CORVELLATEST%tag: " + text + "\nENDCORVELLATEST\n");
        EXPECT_EQ(output.err, "");
    }
}

TEST_F(OutputHooks, OfAutomatedRunsFrameAnEmptyTagAndAnEmptyText)
{
    EXPECT_EQ(capture_output([] { test_output_hook("", ""); }).out,
              "CORVELLATEST: \nENDCORVELLATEST\n");
}

// Deliberate: the frame is put around the text as it stands.
TEST_F(OutputHooks, OfAutomatedRunsDoNotLookForTheEndOfTheFrameInATextOrTag)
{
    EXPECT_EQ(capture_output([] { test_output_hook("a\nENDCORVELLATEST\nb", "t\n"); }).out,
              "CORVELLATESTt\n: a\nENDCORVELLATEST\nb\nENDCORVELLATEST\n");
}

TEST_F(OutputHooks, OfAutomatedRunsHaveFlushedStandardOutput)
{
    const ChildResult child = run_in_child([] {
        test_output_hook("raw", "tag");
        std::_Exit(0);
    });
    EXPECT_EQ(child.out, "CORVELLATESTtag: raw\nENDCORVELLATEST\n");
}

TEST_F(WriteRawMessage, CallsTheOutputHookWithTextAndTagUnchanged)
{
    set_output_hook(noting_output_hook);
    hook_count = 0;
    write_raw_message("raw %d\r\n\n", "tag %s");
    EXPECT_EQ(hook_count, 1);
    EXPECT_EQ(hook_text, "raw %d\r\n\n");
    EXPECT_EQ(hook_tag, "tag %s");
}

TEST_F(WriteRawMessage, HandsOverTextsOfAnyLengthWhole)
{
    set_output_hook(noting_output_hook);
    write_raw_message(counting_text(300000).c_str(), "tag");
    EXPECT_EQ(hook_text, counting_text(300000));
}

TEST_F(WriteRawMessage, DoesNothingAtAllForAnEmptyText)
{
    set_output_hook(noting_output_hook);
    hook_count = 0;
    const CapturedOutput output = capture_output([] { write_raw_message("", "tag"); });
    EXPECT_EQ(hook_count, 0);
    EXPECT_EQ(output.err + output.out, "");
}

TEST_F(WriteRawMessage, TakesATextOfOneNewlineAsText)
{
    EXPECT_EQ(capture_output([] { write_raw_message("\n", "tag"); }).err, "\n");
}

TEST_F(WriteRawMessage, WritesToStandardErrorByDefault)
{
    const CapturedOutput output = capture_output([] { write_raw_message("raw\n", "tag"); });
    EXPECT_EQ(output.err, "raw\n");
    EXPECT_EQ(output.out, "");
}

TEST_F(WriteRawMessage, IsFramedOnceUnderTheTestHook)
{
    set_output_hook(test_output_hook);
    const CapturedOutput output = capture_output([] { write_raw_message("raw", "tag"); });
    EXPECT_EQ(output.out, "CORVELLATESTtag: raw\nENDCORVELLATEST\n");
    EXPECT_EQ(output.err, "");
}

TEST_F(WriteRawMessage, KnowsNeitherIndentNorPrintStreamNorCounter)
{
    set_print_stream(stdout);
    set_print_indent(4);
    const std::int32_t before = message_count();
    const CapturedOutput output = capture_output([] { write_raw_message("a\nb\n", "tag"); });
    EXPECT_EQ(output.err, "a\nb\n");
    EXPECT_EQ(output.out, "");
    EXPECT_EQ(message_count(), before);
}

} // namespace
