#include "web/web_error.h"

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "tests/harness/long_numbers.h"

namespace {

/// Read before any test can have set it.
const std::string text_at_start = web_last_error();

} // namespace

TEST(WebLastError, IsEmptyAtTheStart)
{
    EXPECT_EQ(text_at_start, "");
}

TEST(WebLastError, IsWhatWasSetLast)
{
    set_web_error("first");
    EXPECT_STREQ(web_last_error(), "first");
    set_web_error("second %d of %s", 2, "two");
    EXPECT_STREQ(web_last_error(), "second 2 of two");
}

TEST(WebLastError, StaysUntilTheNextIsSet)
{
    set_web_error("first");
    const char *const text = web_last_error();
    EXPECT_EQ(web_last_error(), text);
    EXPECT_STREQ(text, "first");
}

TEST(WebLastError, MayBeEmpty)
{
    set_web_error("%s", "");
    EXPECT_STREQ(web_last_error(), "");
}

TEST(WebLastError, MayHaveAnyLength)
{
    for (const int size : {1, 127, 1023, 1024, 4095, 4096, 100000}) {
        set_web_error("<%*s>", size, "x");
        EXPECT_EQ(web_last_error(),
                  "<" + std::string(static_cast<std::size_t>(size) - 1, ' ') + "x>");
    }
}

TEST(WebLastError, MayBeTheLargestNumbers)
{
    set_web_error("%f", DBL_MAX);
    EXPECT_EQ(web_last_error(), greatest_double_text);
    set_web_error("%.4000f", 0.5);
    EXPECT_EQ(web_last_error(), precise_half_text);
}

TEST(WebLastError, IsACopyOfItsArguments)
{
    std::string text = "before";
    set_web_error("%s", text.c_str());
    text = "beyond";
    EXPECT_STREQ(web_last_error(), "before");
}

TEST(WebLastError, MayQuoteTheEarlierText)
{
    set_web_error("%s", std::string(300, 'x').c_str());
    set_web_error("first: %s", web_last_error());
    EXPECT_EQ(web_last_error(), "first: " + std::string(300, 'x'));
}

TEST(SystemErrorText, GivesTheNumberAndItsDescription)
{
    for (const int number : {ECONNREFUSED, ENOENT, EMFILE, ETIMEDOUT}) {
        const std::string description = std::strerror(number);
        errno = number;
        EXPECT_EQ(system_error_text(), "code " + std::to_string(number) + ": " + description);
    }
}

TEST(SystemErrorText, HasAnAnswerForEveryNumber)
{
    for (const int number : {0, -1, 99999, INT_MAX, INT_MIN}) {
        const std::string description = std::strerror(number);
        errno = number;
        EXPECT_EQ(system_error_text(), "code " + std::to_string(number) + ": " + description);
    }
}

TEST(SystemErrorText, IsOverwrittenByTheNextCall)
{
    errno = ENOENT;
    const char *const first = system_error_text();
    const std::string before = first;
    errno = EACCES;
    EXPECT_EQ(system_error_text(), first);
    EXPECT_NE(first, before);
}

TEST(SystemErrorText, LeavesTheLastErrorAlone)
{
    set_web_error("earlier");
    errno = EACCES;
    system_error_text();
    EXPECT_STREQ(web_last_error(), "earlier");
}
