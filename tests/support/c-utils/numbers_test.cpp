#include "support/c-utils/numbers.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

#include "tests/support/c-utils/float_bits.h"

// Floats are compared bit for bit. Constants in hexadecimal are single-precision patterns worked
// out with exact rational arithmetic, rounded to the nearest even after each step.

namespace {

#define EXPECT_SAME_BITS(actual, expected) EXPECT_EQ(bits(actual), bits(expected))

TEST(MinAndMaxInt, GiveTheSmallerAndTheLarger)
{
    const struct {
        int a, b, smaller, larger;
    } cases[] = {
        {1, 2, 1, 2}, {2, 1, 1, 2},   {-1, 1, -1, 1},
        {3, 3, 3, 3}, {0, -5, -5, 0}, {INT_MIN, INT_MAX, INT_MIN, INT_MAX},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(min_int(c.a, c.b), c.smaller) << c.a << ' ' << c.b;
        EXPECT_EQ(max_int(c.a, c.b), c.larger) << c.a << ' ' << c.b;
    }
}

TEST(ClampInt, GivesLowBelowLowAndOtherwiseTheSmallerOfXAndHigh)
{
    EXPECT_EQ(clamp_int(4, 5, 10), 5);
    EXPECT_EQ(clamp_int(5, 5, 10), 5);
    EXPECT_EQ(clamp_int(7, 5, 10), 7);
    EXPECT_EQ(clamp_int(10, 5, 10), 10);
    EXPECT_EQ(clamp_int(11, 5, 10), 10);
    EXPECT_EQ(clamp_int(INT_MIN, -1, 1), -1);
    EXPECT_EQ(clamp_int(INT_MAX, -1, 1), 1);
}

TEST(ClampInt, LooksAtLowFirstWhenTheBoundsAreSwapped)
{
    EXPECT_EQ(clamp_int(5, 10, 3), 10);
    EXPECT_EQ(clamp_int(10, 10, 3), 3);
    EXPECT_EQ(clamp_int(20, 10, 3), 3);
}

TEST(AbsInt, GivesTheAbsoluteValue)
{
    EXPECT_EQ(abs_int(0), 0);
    EXPECT_EQ(abs_int(7), 7);
    EXPECT_EQ(abs_int(-7), 7);
    EXPECT_EQ(abs_int(INT_MAX), INT_MAX);
    EXPECT_EQ(abs_int(-INT_MAX), INT_MAX);
}

TEST(AbsInt, LeavesTheLeastIntegerAsItIs)
{
    EXPECT_EQ(abs_int(INT_MIN), INT_MIN);
}

TEST(MinAndMaxFloat, GiveTheSmallerAndTheLarger)
{
    const float least = from_bits(1);
    const struct {
        float smaller, larger;
    } cases[] = {{1.0F, 2.0F},          {-2.0F, -1.0F},         {-1.0F, 1.0F},
                 {-infinity, -FLT_MAX}, {0.0F, least},          {-least, -0.0F},
                 {FLT_MAX, infinity},   {least, FLT_MIN},       {3.0F, 3.0F},
                 {-infinity, infinity}, {1.0F, 1 + FLT_EPSILON}};
    for (const auto &c : cases) {
        EXPECT_SAME_BITS(min_float(c.smaller, c.larger), c.smaller);
        EXPECT_SAME_BITS(min_float(c.larger, c.smaller), c.smaller);
        EXPECT_SAME_BITS(max_float(c.smaller, c.larger), c.larger);
        EXPECT_SAME_BITS(max_float(c.larger, c.smaller), c.larger);
    }
}

TEST(MinAndMaxFloat, PreferANumberToANaN)
{
    EXPECT_EQ(min_float(1.0F, not_a_number), 1.0F);
    EXPECT_EQ(min_float(not_a_number, 1.0F), 1.0F);
    EXPECT_EQ(max_float(1.0F, not_a_number), 1.0F);
    EXPECT_EQ(max_float(not_a_number, 1.0F), 1.0F);
    EXPECT_TRUE(std::isnan(min_float(not_a_number, not_a_number)));
    EXPECT_TRUE(std::isnan(max_float(not_a_number, not_a_number)));
}

TEST(ClampFloat, GivesLowBelowLowAndOtherwiseTheSmallerOfXAndHigh)
{
    EXPECT_SAME_BITS(clamp_float(-1.0F, 0.5F, 2.0F), 0.5F);
    EXPECT_SAME_BITS(clamp_float(0.5F, 0.5F, 2.0F), 0.5F);
    EXPECT_SAME_BITS(clamp_float(1.25F, 0.5F, 2.0F), 1.25F);
    EXPECT_SAME_BITS(clamp_float(2.5F, 0.5F, 2.0F), 2.0F);
    EXPECT_SAME_BITS(clamp_float(infinity, 0.5F, 2.0F), 2.0F);
    EXPECT_SAME_BITS(clamp_float(-infinity, 0.5F, 2.0F), 0.5F);
    EXPECT_SAME_BITS(clamp_float(from_bits(1), from_bits(2), 1.0F), from_bits(2));
}

TEST(ClampFloat, LooksAtLowFirstWhenTheBoundsAreSwapped)
{
    EXPECT_EQ(clamp_float(5.0F, 10.0F, 3.0F), 10.0F);
    EXPECT_EQ(clamp_float(10.0F, 10.0F, 3.0F), 3.0F); // not below low
    EXPECT_EQ(clamp_float(20.0F, 10.0F, 3.0F), 3.0F);
}

TEST(ClampFloat, GivesLowWhenXOrLowIsNotANumber)
{
    EXPECT_EQ(clamp_float(not_a_number, 0.5F, 2.0F), 0.5F);
    EXPECT_TRUE(std::isnan(clamp_float(1.0F, not_a_number, 2.0F)));
    EXPECT_TRUE(std::isnan(clamp_float(3.0F, not_a_number, 2.0F)));
    EXPECT_TRUE(std::isnan(clamp_float(not_a_number, not_a_number, 2.0F)));
}

TEST(AbsFloat, ClearsTheSignBitAndNothingElse)
{
    for (const std::uint32_t pattern :
         {0x00000000U, 0x00000001U, 0x007fffffU, 0x00800000U, 0x3f800000U, 0x7f7fffffU, 0x7f800000U,
          0x7fc00000U, 0x7fc12345U}) {
        EXPECT_EQ(bits(abs_float(from_bits(pattern))), pattern);
        EXPECT_EQ(bits(abs_float(from_bits(pattern | 0x80000000U))), pattern);
    }
}

TEST(LerpFloat, MovesFromAToBWithT)
{
    EXPECT_SAME_BITS(lerp_float(10.0F, 20.0F, 0.0F), 10.0F);
    EXPECT_SAME_BITS(lerp_float(10.0F, 20.0F, 0.25F), 12.5F);
    EXPECT_SAME_BITS(lerp_float(10.0F, 20.0F, 1.0F), 20.0F);
    EXPECT_SAME_BITS(lerp_float(10.0F, 20.0F, 2.0F), 30.0F);
    EXPECT_SAME_BITS(lerp_float(10.0F, 20.0F, -1.0F), 0.0F);
    EXPECT_SAME_BITS(lerp_float(20.0F, 10.0F, 0.25F), 17.5F);
    EXPECT_SAME_BITS(lerp_float(0.0F, from_bits(2), 0.5F), from_bits(1));
}

TEST(LerpFloat, RoundsToSinglePrecisionAtEachStep)
{
    // 1 - 1e8 rounds to -1e8, so that nothing is left.
    EXPECT_SAME_BITS(lerp_float(1e8F, 1.0F, 1.0F), 0.0F);
    // (1 + 2^-12)^2 rounds to 1 + 2^-11 before 1 is taken away.
    EXPECT_EQ(bits(lerp_float(-1.0F, 0x1p-12F, 1 + 0x1p-12F)), 0x3a000000U);
    // 3 + 7 * 0.27 in one rounding would be 0x409c7ae1.
    EXPECT_EQ(bits(lerp_float(3.0F, 10.0F, 0.27F)), 0x409c7ae2U);
    EXPECT_SAME_BITS(lerp_float(-FLT_MAX, FLT_MAX, 0.5F), infinity);
}

TEST(LerpFloat, PassesOnWhatIsNotANumber)
{
    EXPECT_TRUE(std::isnan(lerp_float(0.0F, 1.0F, not_a_number)));
    EXPECT_TRUE(std::isnan(lerp_float(0.0F, infinity, 0.0F)));
    EXPECT_SAME_BITS(lerp_float(0.0F, infinity, 0.5F), infinity);
}

TEST(RemapFloat, MapsOneRangeToAnother)
{
    EXPECT_SAME_BITS(remap_float(5.0F, 0.0F, 10.0F, 100.0F, 200.0F), 150.0F);
    EXPECT_SAME_BITS(remap_float(0.0F, 0.0F, 10.0F, 100.0F, 200.0F), 100.0F);
    EXPECT_SAME_BITS(remap_float(10.0F, 0.0F, 10.0F, 100.0F, 200.0F), 200.0F);
    EXPECT_SAME_BITS(remap_float(20.0F, 0.0F, 10.0F, 100.0F, 200.0F), 300.0F);
    EXPECT_SAME_BITS(remap_float(-5.0F, 0.0F, 10.0F, 100.0F, 200.0F), 50.0F);
    EXPECT_SAME_BITS(remap_float(2.5F, 10.0F, 0.0F, 0.0F, 4.0F), 3.0F);
    EXPECT_SAME_BITS(remap_float(2.5F, 0.0F, 10.0F, 4.0F, 0.0F), 3.0F);
}

TEST(RemapFloat, GivesCWhenTheSourceRangeIsEmpty)
{
    EXPECT_SAME_BITS(remap_float(5.0F, 3.0F, 3.0F, 7.0F, 9.0F), 7.0F);
    EXPECT_SAME_BITS(remap_float(3.0F, 3.0F, 3.0F, 9.0F, 7.0F), 9.0F);
    EXPECT_SAME_BITS(remap_float(0.0F, 0.0F, -0.0F, 7.0F, 9.0F), 7.0F);
    EXPECT_SAME_BITS(remap_float(0.0F, -0.0F, 0.0F, -0.0F, 9.0F), -0.0F);
    EXPECT_SAME_BITS(remap_float(not_a_number, 3.0F, 3.0F, 7.0F, 9.0F), 7.0F);
}

TEST(RemapFloat, TakesADenormalRangeForANonEmptyOne)
{
    EXPECT_SAME_BITS(remap_float(from_bits(1), 0.0F, from_bits(1), 7.0F, 9.0F), 9.0F);
    const float next = from_bits(0x00800001);
    EXPECT_SAME_BITS(remap_float(next, FLT_MIN, next, 7.0F, 9.0F), 9.0F);
}

TEST(RemapFloat, DividesBeforeItMultipliesAndRoundsAtEachStep)
{
    EXPECT_SAME_BITS(remap_float(FLT_MAX, 0.0F, FLT_MAX, 0.0F, 2.0F), 2.0F);
    EXPECT_EQ(bits(remap_float(7.0F, 0.0F, 13.0F, 0.0F, 13.0F)), 0x40e00001U);
    EXPECT_EQ(bits(remap_float(1.0F, 0.0F, 3.0F, -1.0F, 1.0F)), 0xbeaaaaaaU);
    EXPECT_EQ(bits(remap_float(1.0F, 0.0F, 28.0F, -3.0F, 3.0F)), 0xc0324924U);
}

TEST(RemapFloat, PassesOnWhatIsNotANumber)
{
    EXPECT_TRUE(std::isnan(remap_float(not_a_number, 0.0F, 1.0F, 0.0F, 1.0F)));
    EXPECT_TRUE(std::isnan(remap_float(1.0F, infinity, infinity, 7.0F, 9.0F)));
}

TEST(RemapClampedFloat, KeepsTheResultBetweenCAndD)
{
    EXPECT_SAME_BITS(remap_clamped_float(5.0F, 0.0F, 10.0F, 100.0F, 200.0F), 150.0F);
    EXPECT_SAME_BITS(remap_clamped_float(-5.0F, 0.0F, 10.0F, 100.0F, 200.0F), 100.0F);
    EXPECT_SAME_BITS(remap_clamped_float(20.0F, 0.0F, 10.0F, 100.0F, 200.0F), 200.0F);
    EXPECT_SAME_BITS(remap_clamped_float(infinity, 0.0F, 10.0F, 100.0F, 200.0F), 200.0F);
    EXPECT_SAME_BITS(remap_clamped_float(-infinity, 0.0F, 10.0F, 100.0F, 200.0F), 100.0F);
}

TEST(RemapClampedFloat, EndsAtDWhenCIsAboveD)
{
    // Deliberate: raised to c first, then lowered to d.
    EXPECT_SAME_BITS(remap_clamped_float(0.5F, 0.0F, 1.0F, 10.0F, 0.0F), 0.0F);
    EXPECT_SAME_BITS(remap_clamped_float(-1.0F, 0.0F, 1.0F, 10.0F, 0.0F), 0.0F);
    EXPECT_SAME_BITS(remap_clamped_float(2.0F, 0.0F, 1.0F, 10.0F, 1.0F), 1.0F);
}

TEST(RemapClampedFloat, GivesTheSmallerOfCAndDWhenAEqualsB)
{
    EXPECT_SAME_BITS(remap_clamped_float(5.0F, 3.0F, 3.0F, 7.0F, 9.0F), 7.0F);
    EXPECT_SAME_BITS(remap_clamped_float(5.0F, 3.0F, 3.0F, 9.0F, 7.0F), 7.0F);
    EXPECT_SAME_BITS(remap_clamped_float(5.0F, 0.0F, -0.0F, 9.0F, 7.0F), 7.0F);
    EXPECT_SAME_BITS(remap_clamped_float(5.0F, infinity, infinity, 9.0F, 7.0F), 7.0F);
    EXPECT_SAME_BITS(remap_clamped_float(not_a_number, 3.0F, 3.0F, 9.0F, 7.0F), 7.0F);
}

TEST(RemapClampedFloat, LeavesANaNThatIsNeitherBelowCNorAboveD)
{
    EXPECT_TRUE(std::isnan(remap_clamped_float(not_a_number, 0.0F, 1.0F, 7.0F, 9.0F)));
}

TEST(Distance2d, IsTheSquareRootOfTheSumOfSquares)
{
    EXPECT_SAME_BITS(distance_2d(0.0F, 0.0F, 3.0F, 4.0F), 5.0F);
    EXPECT_SAME_BITS(distance_2d(3.0F, 4.0F, 0.0F, 0.0F), 5.0F);
    EXPECT_SAME_BITS(distance_2d(-1.0F, 2.0F, 4.0F, -10.0F), 13.0F);
    EXPECT_SAME_BITS(distance_2d(7.5F, -2.0F, 7.5F, -2.0F), 0.0F);
    EXPECT_EQ(bits(distance_2d(0.0F, 0.0F, 1.0F, 1.0F)), 0x3fb504f3U);
    EXPECT_EQ(bits(distance_2d(1.0F, 1.0F, 6.0F, 8.0F)), 0x4109a320U);
}

TEST(Distance2d, RoundsToSinglePrecisionAtEachStep)
{
    EXPECT_EQ(bits(distance_2d(0.0F, 0.0F, 0.1F, 0.2F)), 0x3e64f92fU); // one rounding: ...2e
    EXPECT_SAME_BITS(distance_2d(0.0F, 0.0F, 3e20F, 4e20F), infinity);
    EXPECT_SAME_BITS(distance_2d(0.0F, 0.0F, 3e-30F, 4e-30F), 0.0F);
}

TEST(Distance2d, PassesOnInfinitiesAndNaNs)
{
    EXPECT_SAME_BITS(distance_2d(-infinity, 0.0F, 1.0F, 1.0F), infinity);
    EXPECT_TRUE(std::isnan(distance_2d(infinity, 0.0F, infinity, 1.0F)));
    EXPECT_TRUE(std::isnan(distance_2d(0.0F, not_a_number, 0.0F, 1.0F)));
}

} // namespace
