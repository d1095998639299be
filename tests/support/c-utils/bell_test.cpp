#include "support/c-utils/bell.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "tests/harness/capture.h"

namespace {

TEST(RingBell, WritesTheBelCharacterToStandardError)
{
    const CapturedOutput output = capture_output([] { ring_bell(); });
    EXPECT_EQ(output.err, std::string(1, '\x07'));
}

TEST(RingBell, WritesNothingToStandardOutput)
{
    const CapturedOutput output = capture_output([] { ring_bell(); });
    EXPECT_EQ(output.out, "");
}

TEST(RingBell, RingsOncePerCallInTheOrderOfOtherOutput)
{
    const CapturedOutput output = capture_output([] {
        std::fputs("a", stderr);
        ring_bell();
        ring_bell();
        std::fputs("b", stderr);
    });
    EXPECT_EQ(output.err, "a\x07\x07"
                          "b");
}

} // namespace
