#include <cfloat>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

#include "support/c-utils/numbers.h"
#include "tests/support/c-utils/float_bits.h"

// Floats are compared bit for bit. Constants in hexadecimal are single-precision patterns worked
// out with exact rational arithmetic, rounded to the nearest even after each step.

namespace {

struct PairCase {
    float x, y, result;
};

TEST(ModuloFloat, TakesTheSignOfY)
{
    const PairCase cases[] = {
        {5.5F, 2.0F, 1.5F}, {-5.5F, 2.0F, 0.5F},  {5.5F, -2.0F, -0.5F},  {-5.5F, -2.0F, -1.5F},
        {6.0F, 2.0F, 0.0F}, {0.75F, 1.0F, 0.75F}, {-0.25F, 1.0F, 0.75F}, {1.0F, 0.25F, 0.0F},
    };
    for (const PairCase &c : cases) {
        EXPECT_EQ(bits(modulo_float(c.x, c.y)), bits(c.result)) << c.x << " by " << c.y;
    }
}

TEST(ModuloFloat, KeepsTheSignsOfZeroThatTheFormulaGives)
{
    EXPECT_EQ(bits(modulo_float(0.0F, 1.0F)), 0U);
    EXPECT_EQ(bits(modulo_float(-0.0F, 1.0F)), 0U); // -0 - -0 is +0
    EXPECT_EQ(bits(modulo_float(0.0F, -1.0F)), 0x80000000U);
    EXPECT_EQ(bits(modulo_float(6.0F, -2.0F)), 0x80000000U);
}

TEST(ModuloFloat, RoundsToSinglePrecisionAtEachStep)
{
    // 10 / 0.1f is 99.99999851, which rounds to 100.
    EXPECT_EQ(bits(modulo_float(10.0F, 0.1F)), 0U);
    // -1e-10 + 1 rounds to 1, so that the remainder reaches y.
    EXPECT_EQ(bits(modulo_float(-1e-10F, 1.0F)), bits(1.0F));
    EXPECT_EQ(bits(modulo_float(-1e-10F, 4.0F)), bits(4.0F));
    EXPECT_EQ(bits(modulo_float(from_bits(1), 1.0F)), 1U);
    EXPECT_EQ(bits(modulo_float(from_bits(1), 2.0F)), 0U);
    EXPECT_EQ(bits(modulo_float(FLT_MAX, 1.0F)), 0U);
}

TEST(ModuloFloat, IsNotANumberWithoutARemainder)
{
    EXPECT_TRUE(std::isnan(modulo_float(1.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(modulo_float(0.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(modulo_float(infinity, 2.0F)));
    EXPECT_TRUE(std::isnan(modulo_float(1.0F, infinity)));
    EXPECT_TRUE(std::isnan(modulo_float(not_a_number, 2.0F)));
    EXPECT_TRUE(std::isnan(modulo_float(2.0F, not_a_number)));
    EXPECT_TRUE(std::isnan(modulo_float(FLT_MAX, 0.5F))); // the quotient is infinite
}

TEST(FractionFloat, IsTheDistanceFromTheFloor)
{
    EXPECT_EQ(bits(fraction_float(2.75F)), bits(0.75F));
    EXPECT_EQ(bits(fraction_float(-2.75F)), bits(0.25F));
    EXPECT_EQ(bits(fraction_float(3.0F)), 0U);
    EXPECT_EQ(bits(fraction_float(-3.0F)), 0U);
    EXPECT_EQ(bits(fraction_float(0.0F)), 0U);
    EXPECT_EQ(bits(fraction_float(-0.0F)), 0U);
    EXPECT_EQ(bits(fraction_float(8388607.5F)), bits(0.5F));
    EXPECT_EQ(bits(fraction_float(-8388607.5F)), bits(0.5F));
    EXPECT_EQ(bits(fraction_float(3e10F)), 0U);
    EXPECT_EQ(bits(fraction_float(-FLT_MAX)), 0U);
    EXPECT_EQ(bits(fraction_float(from_bits(1))), 1U);
}

TEST(FractionFloat, ReachesOneForTheLeastNegativeNumbers)
{
    EXPECT_EQ(bits(fraction_float(-1e-10F)), bits(1.0F));
    EXPECT_EQ(bits(fraction_float(-from_bits(1))), bits(1.0F));
}

TEST(FractionFloat, IsNotANumberForInfinitiesAndNaNs)
{
    EXPECT_TRUE(std::isnan(fraction_float(infinity)));
    EXPECT_TRUE(std::isnan(fraction_float(-infinity)));
    EXPECT_TRUE(std::isnan(fraction_float(not_a_number)));
}

TEST(FloorToStep, GivesTheMultipleAtOrBelow)
{
    const PairCase cases[] = {
        {7.0F, 2.0F, 6.0F},    {-7.0F, 2.0F, -8.0F}, {6.0F, 2.0F, 6.0F},
        {0.99F, 0.25F, 0.75F}, {0.0F, 3.0F, 0.0F},   {7.0F, -2.0F, 8.0F},
        {-0.0F, 1.0F, -0.0F},  {0.5F, 1.0F, 0.0F},   {-from_bits(1), 1.0F, -1.0F},
    };
    for (const PairCase &c : cases) {
        EXPECT_EQ(bits(floor_to_step(c.x, c.y)), bits(c.result)) << c.x << " by " << c.y;
    }
}

TEST(FloorToStep, RoundsTheQuotientToSinglePrecision)
{
    // 0.7f / 0.1f is 6.99999978, which rounds to 7.
    EXPECT_EQ(bits(floor_to_step(0.7F, 0.1F)), 0x3f333333U);
    EXPECT_EQ(bits(floor_to_step(0.3F, 0.1F)), 0x3e99999aU);
}

TEST(FloorToStep, IsNotANumberForAStepOfZero)
{
    EXPECT_TRUE(std::isnan(floor_to_step(1.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(floor_to_step(0.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(floor_to_step(not_a_number, 1.0F)));
    EXPECT_EQ(bits(floor_to_step(infinity, 1.0F)), bits(infinity));
}

TEST(RoundToStep, RoundsHalvesUpwards)
{
    const PairCase cases[] = {
        {2.5F, 1.0F, 3.0F},   {-2.5F, 1.0F, -2.0F}, {2.4F, 1.0F, 2.0F},  {-2.6F, 1.0F, -3.0F},
        {7.0F, 5.0F, 5.0F},   {7.5F, 5.0F, 10.0F},  {0.0F, 1.0F, 0.0F},  {-0.0F, 1.0F, 0.0F},
        {-0.25F, 1.0F, 0.0F}, {0.5F, 0.25F, 0.5F},  {2.4F, -1.0F, 2.0F}, {2.5F, -1.0F, 2.0F},
        {2.6F, -1.0F, 3.0F},  {0.4F, -1.0F, -0.0F},
    };
    for (const PairCase &c : cases) {
        EXPECT_EQ(bits(round_to_step(c.x, c.y)), bits(c.result)) << c.x << " to " << c.y;
    }
}

TEST(RoundToStep, AddsAndDividesInDoublePrecision)
{
    const struct {
        float x, y;
        std::uint32_t result; ///< the next lower step were the sum rounded to single precision
    } cases[] = {
        {from_bits(0x42193333), 0.2F, 0x4219999a},
        {79.0F, 0.4F, 0x429e6667},
        {from_bits(0x41f53333), 0.1F, 0x41f5999a},
        {194.0F, 0.8F, 0x43426667},
        {23.25F, 0.1F, 0x41ba6667},
        {95.0F, 0.4F, 0x42be6667},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(bits(round_to_step(c.x, c.y)), c.result) << c.x << " to " << c.y;
    }
}

TEST(RoundToStep, ConvertsTheQuotientToSinglePrecisionBeforeTheFloor)
{
    // 0.5 - 2^-25 + 0.5 lies halfway between two floats, and 1 is the even one.
    EXPECT_EQ(bits(round_to_step(from_bits(0x3effffff), 1.0F)), bits(1.0F));
    EXPECT_EQ(bits(round_to_step(3.0F, 0.4F)), 0x404ccccdU);
    EXPECT_EQ(bits(round_to_step(102.0F, 0.8F)), 0x42cccccdU);
    EXPECT_EQ(bits(round_to_step(from_bits(0x4343a666), 0.7F)), 0x43440000U);
}

TEST(RoundToStep, HandlesTheEndsOfTheRange)
{
    EXPECT_EQ(bits(round_to_step(FLT_MAX, 1.0F)), bits(FLT_MAX));
    EXPECT_EQ(bits(round_to_step(FLT_MAX, from_bits(1))), bits(infinity));
    EXPECT_EQ(bits(round_to_step(from_bits(3), from_bits(2))), 4U);
    EXPECT_EQ(bits(round_to_step(from_bits(2), from_bits(5))), 0U);
    EXPECT_EQ(bits(round_to_step(infinity, 1.0F)), bits(infinity));
    EXPECT_TRUE(std::isnan(round_to_step(1.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(round_to_step(0.0F, 0.0F)));
    EXPECT_TRUE(std::isnan(round_to_step(1.0F, infinity)));
    EXPECT_TRUE(std::isnan(round_to_step(not_a_number, 1.0F)));
}

struct NoiseCase {
    std::uint32_t x;
    std::uint32_t noise;
};

TEST(HashNoiseFloat, IsMadeOfTheLow29BitsOfTheScaledPattern)
{
    const NoiseCase cases[] = {
        {0x00000000, 0xc2000000}, // 0: no bits at all, -32
        {0x80000000, 0xc2000000}, // -0
        {0x3f800000, 0x00000000}, // 1: pattern 0x50000000, 0
        {0xbf800000, 0x00000000}, // -1: the sign bit is not among them
        {0x40000000, 0x3f800000}, // 2: 0x50800000, 1
        {0x3f000000, 0xbf800000}, // 0.5: 0x4f800000, -1
        {0x3fc00000, 0x3f000000}, // 1.5: 0x50400000, 0.5
        {0x3f800001, 0x34000000}, // the float above 1: 0x50000001, 2^-23
        {0x3f7fffff, 0xb4000000}, // the float below 1: 0x4fffffff, -2^-23
        {0x3dcccccd, 0xc059999a}, // 0.1: 0x4e4ccccd, -28521267 rounded to even, -3.4
        {0x00000001, 0xc1a80000}, // 2^-149: 2^-116 is 0x05800000, -21
        {0x80000001, 0xc1a80000},
    };
    for (const NoiseCase &c : cases) {
        EXPECT_EQ(bits(hash_noise_float(from_bits(c.x))), c.noise) << std::hex << c.x;
    }
}

TEST(HashNoiseFloat, TakesInfinitiesAndNaNsForTheirBits)
{
    EXPECT_EQ(bits(hash_noise_float(infinity)), bits(31.0F)); // 0x7f800000
    EXPECT_EQ(bits(hash_noise_float(-infinity)), bits(31.0F));
    EXPECT_EQ(bits(hash_noise_float(FLT_MAX)), bits(31.0F));      // the product is infinite
    EXPECT_EQ(bits(hash_noise_float(0x1p95F)), bits(31.0F));      // the first that is
    EXPECT_EQ(bits(hash_noise_float(not_a_number)), bits(31.5F)); // 0x7fc00000
    EXPECT_EQ(bits(hash_noise_float(0x1p94F)), bits(30.0F));      // 0x7f000000
}

TEST(HashNoiseFloat, StaysBelow32ForPatternsThatRoundDownToIt)
{
    // 0x5ffffff7 leaves 0x0ffffff7, which rounds to 0x0ffffff0.
    EXPECT_EQ(bits(hash_noise_float(from_bits(0x4f7ffff7))), 0x41ffffffU);
}

TEST(HashNoiseFloat, RoundsTheEightHighestPatternsTo32)
{
    // Deliberate: 0x0ffffff8 to 0x0fffffff have no float of their own below 2^28.
    EXPECT_EQ(bits(hash_noise_float(from_bits(0x4f7ffff8))), bits(32.0F));
    EXPECT_EQ(bits(hash_noise_float(from_bits(0x4f7fffff))), bits(32.0F));
}

TEST(HashNoiseFloat, IsRepeatable)
{
    for (const float x : {0.1F, 123.456F, -7.0F, 1e-20F}) {
        EXPECT_EQ(bits(hash_noise_float(x)), bits(hash_noise_float(x)));
    }
}

} // namespace
