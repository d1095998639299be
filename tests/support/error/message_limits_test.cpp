// Where over-long messages are cut, and what happens when they cannot be written.
#include <cfloat>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/harness/full_device.h"
#include "tests/harness/long_numbers.h"
#include "tests/support/error/facility_test.h"

namespace {

class MessageLimits : public FacilityTest {};

std::string text_in_hook;

int noting_hook(int, const char *text)
{
    text_in_hook = text;
    return 0;
}

CapturedOutput output_of(int level, const std::string &text)
{
    return capture_output([&] { report_message(level, "%s", text.c_str()); });
}

TEST_F(MessageLimits, HandTheHookAtMost1023CharactersOfTheExpansion)
{
    set_message_hook(noting_hook);
    for (const std::size_t length : {1002U, 1003U, 1004U, 1022U, 1023U}) {
        output_of(9, counting_text(length));
        EXPECT_EQ(text_in_hook, counting_text(length));
    }
    for (const std::size_t length : {1024U, 1025U, 2000U, 4096U, 70000U}) {
        output_of(9, counting_text(length));
        EXPECT_EQ(text_in_hook, counting_text(1023)) << length;
    }
}

TEST_F(MessageLimits, CutTheComposedLineAt1023CharactersWithItsNewline)
{
    set_message_hook(noting_hook);
    const std::string label = "Warning: "; // 9 characters
    EXPECT_EQ(output_of(8, counting_text(1012)).err, label + counting_text(1012) + "\n");
    EXPECT_EQ(output_of(8, counting_text(1013)).err, label + counting_text(1013) + "\n");
    for (const std::size_t length : {1014U, 1015U, 1023U, 1024U, 2000U, 70000U}) {
        EXPECT_EQ(output_of(8, counting_text(length)).err, label + counting_text(1014)) << length;
    }
}

TEST_F(MessageLimits, CutTheComposedLineOfAnUnlabelledLevelAt1023Characters)
{
    set_message_hook(noting_hook);
    EXPECT_EQ(output_of(1, counting_text(1020)).err, ": " + counting_text(1020) + "\n");
    EXPECT_EQ(output_of(1, counting_text(1021)).err, ": " + counting_text(1021));
    EXPECT_EQ(output_of(6, counting_text(1023)).err, ": " + counting_text(1021));
}

TEST_F(MessageLimits, KeepTheFirst1003CharactersInTheHooksLine)
{
    const std::string line = "Warning: " + counting_text(1014);
    for (const std::size_t length : {1014U, 1023U, 1024U, 2000U}) {
        EXPECT_EQ(output_of(8, counting_text(length)).err,
                  line + "Warning: " + counting_text(1003) + "\x07\n")
            << length;
    }
}

TEST_F(MessageLimits, KeepTheBellBehindTheLongestLabel)
{
    set_message_hook(test_message_hook);
    EXPECT_EQ(output_of(10, counting_text(2000)).out,
              "CORVELLATESTFatal Error: " + counting_text(1003) + "\x07\nENDCORVELLATEST\n");
}

TEST_F(MessageLimits, LoseTheNewlinesThatAreCutAway)
{
    // The 1023 characters kept end in an 'a', so nothing is left to be dropped before the cap.
    const std::string text = many(1023) + "\n";
    EXPECT_EQ(output_of(2, text).err, "Info: " + many(1017) + "Info: " + many(1003) + "\n");
}

TEST_F(MessageLimits, DropTheNewlinesBeforeTheHooksCapIsTaken)
{
    const std::string text = many(1003) + "\n\n\n";
    EXPECT_EQ(output_of(2, text).err, "Info: " + text + "\n" + "Info: " + many(1003) + "\n");
}

TEST_F(MessageLimits, KeepANewlineThatTheHooksCapBringsToTheEnd)
{
    // Deliberate: newlines are dropped once, before the text is capped.
    const std::string text = many(1002) + "\nb";
    EXPECT_EQ(output_of(4, text).err, "Info: " + text + "\n" + "Info: " + many(1002) + "\n\x07\n");
}

TEST_F(MessageLimits, ReturnTheLengthOfTheCutRecordAtLevelZero)
{
    int result = 0;
    capture_output([&] { result = report_message(0, "%s", many(5000).c_str()); });
    EXPECT_EQ(result, 24 + 2 + 1023);
}

TEST_F(MessageLimits, CutAnExpansionByItsFieldWidth)
{
    set_message_hook(noting_hook);
    capture_output([] { report_message(2, "%*d", 100000, 7); });
    EXPECT_EQ(text_in_hook, many(1023, ' '));
}

TEST_F(MessageLimits, HoldForTheLargestNumbers)
{
    set_message_hook(noting_hook);
    EXPECT_EQ(capture_output([] { report_message(2, "%f", DBL_MAX); }).err,
              "Info: " + greatest_double_text + "\n");
    EXPECT_EQ(text_in_hook, greatest_double_text);
    EXPECT_EQ(capture_output([] { report_message(2, "%.4000f", 0.5); }).err,
              "Info: " + precise_half_text.substr(0, 1017));
    EXPECT_EQ(text_in_hook, precise_half_text.substr(0, 1023));
}

class UnwritableMessages : public FacilityTest {};

TEST_F(UnwritableMessages, AreCountedAllTheSameWhenStandardErrorIsClosed)
{
    const ChildResult child = run_in_child([] {
        const std::int32_t before = message_count();
        close(STDERR_FILENO);
        for (int level = -1; level < 10; ++level) {
            report_message(level, "disk");
        }
        write_raw_message("raw", "tag");
        std::_Exit(message_count() - before);
    });
    EXPECT_EQ(child.exit_status, 11);
}

TEST_F(UnwritableMessages, AreCountedAllTheSameOnAFullDevice)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const ChildResult child = run_in_child([] {
        const std::int32_t before = message_count();
        dup2(open("/dev/full", O_WRONLY), STDERR_FILENO);
        for (int level = -1; level < 10; ++level) {
            report_message(level, "disk");
        }
        std::_Exit(message_count() - before);
    });
    EXPECT_EQ(child.exit_status, 11);
}

TEST_F(UnwritableMessages, EndTheProcessWithStatusOneWhenFatal)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const ChildResult child = run_in_child([] {
        dup2(open("/dev/full", O_WRONLY), STDERR_FILENO);
        report_message(10, "disk");
    });
    EXPECT_EQ(child.exit_status, 1);
    EXPECT_EQ(child.signal, 0);
}

TEST_F(UnwritableMessages, DoNotStopTheTestHooks)
{
    const ChildResult child = run_in_child([] {
        std::signal(SIGPIPE, SIG_IGN);
        int ends[2];
        if (pipe(ends) != 0) {
            std::_Exit(1);
        }
        close(ends[0]);
        dup2(ends[1], STDOUT_FILENO);
        test_message_hook(10, "disk");
        test_output_hook("disk", "tag");
        std::_Exit(55);
    });
    EXPECT_EQ(child.exit_status, 55);
}

TEST_F(UnwritableMessages, ReachTheHookThoughThePrintStreamIsReadOnly)
{
    set_message_hook(noting_hook);
    std::FILE *stream = std::fopen("/dev/null", "r");
    ASSERT_NE(stream, nullptr);
    set_print_stream(stream);
    text_in_hook.clear();
    EXPECT_EQ(output_of(9, "disk").err, "");
    EXPECT_EQ(text_in_hook, "disk");
    set_print_stream(nullptr);
    std::fclose(stream);
}

} // namespace
