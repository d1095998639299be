// The linker routes the facility's calls of record_timestamped_line() through this program, so that
// the text of a failed assertion, which goes nowhere else, can be seen.
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <unistd.h>
#include <vector>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/error/facility_test.h"

namespace {

std::vector<std::string> recorded;

} // namespace

// The symbols that the linker's option --wrap makes of the name of record_timestamped_line().
extern "C" int __real__Z23record_timestamped_linePKc(const char *text);
extern "C" int __wrap__Z23record_timestamped_linePKc(const char *text);

int __wrap__Z23record_timestamped_linePKc(const char *text)
{
    recorded.emplace_back(text);
    return __real__Z23record_timestamped_linePKc(text);
}

namespace {

static_assert(!std::is_polymorphic_v<CorvellaAbortException>);
static_assert(std::is_standard_layout_v<CorvellaAbortException>);
static_assert(!std::is_base_of_v<std::exception, CorvellaAbortException>);
static_assert(std::is_same_v<decltype(CorvellaAbortException::file), const char *>);
static_assert(std::is_same_v<decltype(CorvellaAbortException::line), std::int32_t>);
static_assert(std::is_same_v<decltype(CorvellaAbortException::code), std::int32_t>);
static_assert(std::is_same_v<decltype(CorvellaAbortException::reserved), std::int32_t>);
static_assert(offsetof(CorvellaAbortException, file) == 0);
static_assert(offsetof(CorvellaAbortException, line) == sizeof(char *));
static_assert(offsetof(CorvellaAbortException, code) == sizeof(char *) + 4);
static_assert(offsetof(CorvellaAbortException, reserved) == sizeof(char *) + 8);
static_assert(sizeof(void *) != 4 || sizeof(CorvellaAbortException) == 16);

const std::string sentence =
    "A Corvella internal error has occurred. Please save your work soon and restart.";
const std::string sentence_twice = "Error: " + sentence + "\n\nError: " + sentence + "\x07\n";

class ThrowAbort : public FacilityTest {};

class AssertionFailed : public FacilityTest {
protected:
    struct Outcome {
        CorvellaAbortException thrown;
        bool did_throw;
        CapturedOutput output;
    };

    static Outcome fail(const std::string &expression, const std::string &file, int line)
    {
        recorded.clear();
        Outcome outcome{};
        outcome.output = capture_output([&] {
            try {
                assertion_failed(expression.c_str(), file.c_str(), line);
            } catch (const CorvellaAbortException &thrown) {
                outcome.thrown = thrown;
                outcome.did_throw = true;
            }
        });
        return outcome;
    }
};

struct AbortCase {
    int code;
    const char *file;
    int line;
};

const AbortCase abort_cases[] = {
    {1, "support/c-utils", 291}, {5, "support/error", 429}, {0, "", 0},
    {-1, nullptr, -1},           {INT_MAX, "x", INT_MIN},   {INT_MIN, "x", INT_MAX},
};

TEST_F(ThrowAbort, ThrowsWhatItWasGivenWithAReservedFieldOfZero)
{
    for (const AbortCase &c : abort_cases) {
        try {
            throw_abort(c.code, c.file, c.line);
        } catch (const CorvellaAbortException &thrown) {
            EXPECT_EQ(static_cast<const void *>(thrown.file), c.file);
            EXPECT_EQ(thrown.line, c.line);
            EXPECT_EQ(thrown.code, c.code);
            EXPECT_EQ(thrown.reserved, 0);
        }
    }
    EXPECT_THROW(throw_abort(1, "x", 1), CorvellaAbortException);
}

TEST_F(ThrowAbort, ThrowsNothingThatAHandlerOfStandardExceptionsCatches)
{
    bool caught_exactly = false;
    try {
        throw_abort(1, "x", 1);
    } catch (const std::exception &) {
        ADD_FAILURE();
    } catch (CorvellaAbortException &) {
        caught_exactly = true;
    }
    EXPECT_TRUE(caught_exactly);
}

TEST_F(ThrowAbort, SaysNothing)
{
    recorded.clear();
    const std::int32_t before = message_count();
    const CapturedOutput output =
        capture_output([] { EXPECT_THROW(throw_abort(1, "x", 1), CorvellaAbortException); });
    EXPECT_EQ(output.err + output.out, "");
    EXPECT_EQ(message_count(), before);
    EXPECT_TRUE(recorded.empty());
}

TEST_F(ThrowAbort, EndsTheProcessWhenNobodyCatches)
{
    const ChildResult child = run_in_child([] { throw_abort(1, "support/c-utils", 291); });
    EXPECT_EQ(child.exit_status, -1);
    EXPECT_EQ(child.signal, SIGABRT);
}

TEST_F(AssertionFailed, ThrowsItsOwnPlaceAndCodeFiveWhicheverAssertionFailed)
{
    // Deliberate: the exception names the place that throws, not the assertion's.
    for (const int line : {0, 1, 77, -1, INT_MAX, INT_MIN}) {
        const Outcome outcome = fail("pointer != nullptr", "web/transaction.cpp", line);
        ASSERT_TRUE(outcome.did_throw);
        EXPECT_STREQ(outcome.thrown.file, "support/error");
        EXPECT_EQ(outcome.thrown.line, 429);
        EXPECT_EQ(outcome.thrown.code, 5);
        EXPECT_EQ(outcome.thrown.reserved, 0);
    }
}

TEST_F(AssertionFailed, PrintsTheSameSentenceForEveryExpression)
{
    for (const std::string &expression : {std::string("a"), std::string(""), std::string("%s%n"),
                                          std::string("a\nb\n"), counting_text(100000)}) {
        const Outcome outcome = fail(expression, "a.cpp", 12);
        EXPECT_EQ(outcome.output.err, sentence_twice);
        EXPECT_EQ(outcome.output.out, "");
    }
}

TEST_F(AssertionFailed, RecordsThePlaceAndTheExpressionAndThenTheMessage)
{
    fail("n > 0 && s[n] == '%'", "web/form.cpp", 312);
    ASSERT_EQ(recorded.size(), 2U);
    EXPECT_EQ(recorded[0], "web/form.cpp:312: assertion failed: n > 0 && s[n] == '%'");
    EXPECT_EQ(recorded[1], "Error: " + sentence + "\n\n");
}

TEST_F(AssertionFailed, RecordsConversionsAsTheyStandAndAnyLineNumber)
{
    fail("%s%n%d", "%s.cpp", INT_MIN);
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(recorded[0], "%s.cpp:-2147483648: assertion failed: %s%n%d");
}

TEST_F(AssertionFailed, CutsTheRecordedTextAt4095Characters)
{
    const std::string start = "a.cpp:7: assertion failed: "; // 27 characters
    for (const std::size_t length : {4067U, 4068U, 4069U, 4070U, 5000U, 100000U}) {
        fail(counting_text(length), "a.cpp", 7);
        ASSERT_FALSE(recorded.empty());
        EXPECT_EQ(recorded[0], start + counting_text(length < 4068 ? length : 4068)) << length;
    }
}

TEST_F(AssertionFailed, CutsTheRecordedTextInsideALongFileName)
{
    fail("a > b", counting_text(9000), 7);
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(recorded[0], counting_text(4095));
}

TEST_F(AssertionFailed, HandsTheMessageHookLevelNineAndTheSentenceWithItsNewline)
{
    static int hook_level;
    static std::string hook_text;
    set_message_hook([](int level, const char *text) -> int {
        hook_level = level;
        hook_text = text;
        return 0;
    });
    fail("a > b", "a.cpp", 1);
    EXPECT_EQ(hook_level, 9);
    EXPECT_EQ(hook_text, sentence + "\n");
}

TEST_F(AssertionFailed, CountsAsOneMessage)
{
    const std::int32_t before = message_count();
    fail("a > b", "a.cpp", 1);
    EXPECT_EQ(message_count(), before + 1);
}

TEST_F(AssertionFailed, IsFramedUnderTheTestHook)
{
    set_message_hook(test_message_hook);
    const Outcome outcome = fail("a > b", "a.cpp", 1);
    EXPECT_EQ(outcome.output.out, "CORVELLATESTError: " + sentence + "\x07\nENDCORVELLATEST\n");
    EXPECT_EQ(outcome.output.err, "Error: " + sentence + "\n\n");
}

TEST_F(AssertionFailed, EndsTheProcessByTheUncaughtExceptionAfterTheSentence)
{
    const ChildResult child = run_in_child([] { assertion_failed("a > b", "a.cpp", 1); });
    EXPECT_EQ(child.signal, SIGABRT);
    EXPECT_EQ(child.exit_status, -1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err.substr(0, sentence_twice.size()), sentence_twice);
    EXPECT_EQ(child.err.find("a > b"), std::string::npos);
}

TEST_F(AssertionFailed, ThrowsAlsoWhenTheSentenceCannotBeWritten)
{
    const ChildResult child = run_in_child([] {
        close(STDERR_FILENO);
        try {
            assertion_failed("a > b", "a.cpp", 1);
        } catch (const CorvellaAbortException &thrown) {
            std::_Exit(thrown.code);
        }
    });
    EXPECT_EQ(child.exit_status, 5);
}

} // namespace
