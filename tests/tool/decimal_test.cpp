#include "tool/decimal.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace corvella;

TEST(Decimal, ReadsDigitsWithAPoint)
{
    const struct {
        const char *text;
        double number;
    } cases[] = {
        {"0", 0},
        {"7", 7},
        {"10", 10},
        {"0.5", 0.5},
        {".25", 0.25},
        {"5.", 5},
        {"5.1", 5.1},
        {"007", 7},
        {"0.001", 0.001},
        {"0.1", 0.1},
        {"123456.789", 123456.789},
    };
    for (const auto &[text, number] : cases) {
        double result = -1;
        EXPECT_TRUE(parse_decimal(text, result)) << text;
        EXPECT_EQ(result, number) << text;
    }
}

TEST(Decimal, RejectsEverythingElse)
{
    for (const char *const text : {"", ".", "..", "1.2.3", "1..2", "-1", "+1", " 1", "1 ", "1e3",
                                   "0x10", "inf", "nan", "1,5", "five", "5x", "\xb2"}) {
        double result = 0;
        EXPECT_FALSE(parse_decimal(text, result)) << text;
    }
}

TEST(Decimal, OverflowsToInfinity)
{
    double result = 0;
    EXPECT_TRUE(parse_decimal(std::string(400, '9').c_str(), result));
    EXPECT_GT(result, 1e308);
    EXPECT_TRUE(parse_decimal(("0." + std::string(400, '0') + "1").c_str(), result));
    EXPECT_LT(result, 1e-300);
}

} // namespace
