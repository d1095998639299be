// The counter of messages where it passes 15, 16, 31 and 32 bits. Its source is part of this file,
// so that the test can set the counter.
#include <cstdint>
#include <gtest/gtest.h>

#include "support/error/messages.cpp" // NOLINT(bugprone-suspicious-include)
#include "tests/harness/capture.h"

namespace {

std::int32_t count_after_one_more(std::uint32_t count)
{
    reported_messages = count;
    EXPECT_EQ(message_count(), static_cast<std::int32_t>(count));
    capture_output([] { report_message(0, "one more"); });
    return message_count();
}

} // namespace

TEST(MessageCount, PassesEveryPowerOfTwoAndWraps)
{
    EXPECT_EQ(count_after_one_more(0), 1);
    EXPECT_EQ(count_after_one_more(0x7f), 0x80);
    EXPECT_EQ(count_after_one_more(0xff), 0x100);
    EXPECT_EQ(count_after_one_more(0x7fff), 0x8000);
    EXPECT_EQ(count_after_one_more(0xffff), 0x10000);
    EXPECT_EQ(count_after_one_more(0xffffff), 0x1000000);
    EXPECT_EQ(count_after_one_more(0x7fffffff), INT32_MIN);
    EXPECT_EQ(count_after_one_more(0xffffffff), 0);
}
