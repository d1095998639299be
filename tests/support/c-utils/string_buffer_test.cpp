#include "support/c-utils/string_buffer.h"

#include <cfloat>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <gtest/gtest.h>
#include <new>
#include <string>

#include "tests/harness/long_numbers.h"
#include "tests/support/c-utils/exact_buffer.h"

namespace {

/// A buffer that is freed at the end of a test.
class StringBuffer : public testing::Test {
protected:
    ~StringBuffer() override
    {
        string_buffer_free(&buffer);
    }

    std::uint32_t append(const std::string &text)
    {
        return string_buffer_append_format(&buffer, "%s", text.c_str());
    }

    std::uint32_t append_x(std::size_t count)
    {
        return append(std::string(count, 'x'));
    }

    string_buffer buffer = {};
};

/// No character of the C locale, so that "%lc" fails.
constexpr auto unprintable = static_cast<std::wint_t>(0x20ac);

TEST_F(StringBuffer, IsThreeFieldsInThisOrder)
{
    EXPECT_EQ(offsetof(string_buffer, data), 0U);
    EXPECT_EQ(offsetof(string_buffer, capacity), sizeof(char *));
    EXPECT_EQ(offsetof(string_buffer, length), sizeof(char *) + 4);
    EXPECT_EQ(sizeof(string_buffer), sizeof(char *) == 4 ? 12U : 16U);
}

TEST_F(StringBuffer, HasNoDataWhileNothingWasAppended)
{
    EXPECT_EQ(string_buffer_data(&buffer), nullptr);
}

TEST_F(StringBuffer, AppendsFormattedTextAndReturnsTheNewLength)
{
    EXPECT_EQ(string_buffer_append_format(&buffer, "%s=%d", "a", 12), 4U);
    EXPECT_EQ(string_buffer_append_format(&buffer, ";%c%%", 'b'), 7U);
    EXPECT_EQ(buffer.length, 7U);
    EXPECT_STREQ(string_buffer_data(&buffer), "a=12;b%");
    EXPECT_EQ(string_buffer_data(&buffer), buffer.data);
}

TEST_F(StringBuffer, GrowsToTheTextsLengthAndTheLengthSoFarAnd128)
{
    EXPECT_EQ(append_x(5), 5U);
    EXPECT_EQ(buffer.capacity, 5 + 0 + 128);
    EXPECT_EQ(append_x(127), 132U); // 133 - 5 - 2 is 126
    EXPECT_EQ(buffer.capacity, 127 + 5 + 128);
}

TEST_F(StringBuffer, DoesNotGrowForExactlyCapacityLessLengthLessTwo)
{
    append_x(5);
    EXPECT_EQ(append_x(126), 131U);
    EXPECT_EQ(buffer.capacity, 133);
    EXPECT_EQ(append(""), 131U);
    EXPECT_EQ(buffer.capacity, 133);
    EXPECT_EQ(append("x"), 132U);
    EXPECT_EQ(buffer.capacity, 1 + 131 + 128);
    EXPECT_EQ(buffer.data, std::string(132, 'x'));
}

TEST_F(StringBuffer, GrowsAnEmptyBufferForAnEmptyText)
{
    EXPECT_EQ(append(""), 0U);
    EXPECT_EQ(buffer.capacity, 128);
    ASSERT_NE(buffer.data, nullptr);
    EXPECT_STREQ(buffer.data, "");
}

TEST_F(StringBuffer, FillsItsCapacityUpToTheLastByteButOne)
{
    append("");
    EXPECT_EQ(append_x(126), 126U);
    EXPECT_EQ(buffer.capacity, 128);
    EXPECT_EQ(buffer.data, std::string(126, 'x'));
    EXPECT_EQ(append_x(1), 127U);
    EXPECT_EQ(buffer.capacity, 1 + 126 + 128);
}

TEST_F(StringBuffer, AppendsTextsOfEveryLengthWhole)
{
    for (const std::size_t length : {1U, 254U, 255U, 256U, 257U, 1023U, 1024U, 1025U, 4092U, 4093U,
                                     4094U, 4095U, 4096U, 4097U, 4098U, 8191U, 8192U, 100000U}) {
        string_buffer fresh = {};
        const std::string text = std::string(length - 1, 'x') + "y";
        EXPECT_EQ(string_buffer_append_format(&fresh, "%s", text.c_str()), length);
        EXPECT_EQ(fresh.data, text) << length;
        EXPECT_EQ(fresh.length, length);
        EXPECT_EQ(fresh.capacity, static_cast<std::int32_t>(length + 128));
        string_buffer_free(&fresh);
    }
}

TEST_F(StringBuffer, AppendsLongTextsBehindOthersWhole)
{
    std::string expected = "start";
    append("start");
    for (const std::size_t length : {4093U, 4094U, 4095U, 4096U, 4097U, 100000U, 1U, 4096U}) {
        const std::string text(length, static_cast<char>('a' + length % 26));
        const std::size_t before = expected.size();
        const std::int32_t room = buffer.capacity - static_cast<std::int32_t>(before) - 2;
        expected += text;
        EXPECT_EQ(append(text), expected.size());
        EXPECT_EQ(buffer.data, expected);
        if (static_cast<std::int32_t>(length) > room) {
            EXPECT_EQ(buffer.capacity, static_cast<std::int32_t>(length + before + 128));
        }
    }
}

TEST_F(StringBuffer, FormatsALongTextWithAllItsArguments)
{
    const std::string text(6000, 'x');
    EXPECT_EQ(string_buffer_append_format(&buffer, "%d%s%.1f%c", 17, text.c_str(), 2.5, '!'),
              6006U);
    EXPECT_EQ(buffer.data, "17" + text + "2.5!");
}

TEST_F(StringBuffer, AppendsTheLargestNumbersWhole)
{
    EXPECT_EQ(string_buffer_append_format(&buffer, "%f", DBL_MAX), 316U);
    EXPECT_EQ(string_buffer_append_format(&buffer, "%.4000f", 0.5), 316U + 4002U);
    const std::string both = greatest_double_text + precise_half_text;
    EXPECT_EQ(buffer.data, both);
    // Beyond what is formatted on the stack.
    EXPECT_EQ(string_buffer_append_format(&buffer, "%f%.4000f", DBL_MAX, 0.5), 2 * both.size());
    EXPECT_EQ(buffer.data, both + both);
}

TEST_F(StringBuffer, CountsAFormattingErrorAs4095NulFilledCharacters)
{
    // Deliberate: the length of a failed append is that of the formatting limit.
    EXPECT_EQ(string_buffer_append_format(&buffer, "ab%lc", unprintable), 4095U);
    EXPECT_EQ(buffer.length, 4095U);
    EXPECT_EQ(buffer.capacity, 4095 + 128);
    const std::string all(buffer.data, 4096);
    const std::string kept = buffer.data;
    EXPECT_EQ(kept, std::string("ab").substr(0, kept.size()));
    EXPECT_EQ(all.find_first_not_of('\0', kept.size()), std::string::npos);
}

TEST_F(StringBuffer, GoesOnBehindAFailedAppend)
{
    append("before");
    EXPECT_EQ(string_buffer_append_format(&buffer, "%lc", unprintable), 6U + 4095U);
    EXPECT_EQ(append("after"), 6U + 4095U + 5U);
    EXPECT_EQ(std::string(buffer.data, 6), "before");
    EXPECT_STREQ(buffer.data + 6 + 4095, "after");
}

TEST_F(StringBuffer, CountsALongTextThatFailsAs4095CharactersToo)
{
    const std::string text(5000, 'x');
    EXPECT_EQ(string_buffer_append_format(&buffer, "%s%lc", text.c_str(), unprintable), 4095U);
    EXPECT_EQ(buffer.data[4095], '\0');
    const std::string kept = buffer.data;
    EXPECT_EQ(kept, std::string(kept.size(), 'x'));
}

struct FakeRecord {
    std::int32_t capacity;
    std::uint32_t length;
    std::size_t appended;
};

TEST_F(StringBuffer, ThrowsBadAllocForALengthThatTheRecordCannotHoldAndKeepsTheRecord)
{
    const FakeRecord fakes[] = {
        {INT32_MAX, INT32_MAX - 10U, 9},    // one byte too many
        {INT32_MAX, INT32_MAX - 10U, 5000}, // through the longer way as well
        {INT32_MAX, INT32_MAX - 2U, 1},     // the sum still fits, 128 more do not
        {INT32_MAX, INT32_MAX - 1U, 1},     // no room even for the NUL
        {INT32_MAX - 100, INT32_MAX - 102U, 1},
        {INT32_MAX, UINT32_MAX - 1U, 1},
        {INT32_MAX, UINT32_MAX, 1},
        {INT32_MAX, UINT32_MAX - 4999U, 5000},
        {INT32_MAX, UINT32_MAX - 100U, 10}, // 128 more wrap in 32 bits
    };
    for (const FakeRecord &fake : fakes) {
        char data[] = "data";
        string_buffer record = {data, fake.capacity, fake.length};
        const std::string text(fake.appended, 'x');
        EXPECT_THROW(string_buffer_append_format(&record, "%s", text.c_str()), std::bad_alloc)
            << fake.length;
        EXPECT_EQ(record.data, data);
        EXPECT_EQ(record.capacity, fake.capacity);
        EXPECT_EQ(record.length, fake.length);
        EXPECT_STREQ(data, "data");
    }
}

TEST_F(StringBuffer, ThrowsBadAllocForAFailedFormatThatTheRecordCannotHold)
{
    char data[] = "data";
    string_buffer record = {data, INT32_MAX, INT32_MAX - 1000U};
    EXPECT_THROW(string_buffer_append_format(&record, "%lc", unprintable), std::bad_alloc);
    EXPECT_EQ(record.length, INT32_MAX - 1000U);
    EXPECT_STREQ(data, "data");
}

TEST_F(StringBuffer, ThrowsBadAllocForATextThatNoIntegerCanCount)
{
    append("kept");
    const std::string format = "%" + std::to_string(INT_MAX + 1LL) + "d";
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    EXPECT_THROW(string_buffer_append_format(&buffer, format.c_str(), 1), std::bad_alloc);
#pragma GCC diagnostic pop
    EXPECT_EQ(buffer.length, 4U);
    EXPECT_EQ(buffer.capacity, 4 + 128);
    EXPECT_STREQ(buffer.data, "kept");
}

TEST_F(StringBuffer, IsZeroedByFreeingAndCanBeUsedAgain)
{
    append_x(500);
    string_buffer_free(&buffer);
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.capacity, 0);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(append("again"), 5U);
    EXPECT_EQ(buffer.capacity, 133);
    EXPECT_STREQ(buffer.data, "again");
}

TEST_F(StringBuffer, CanBeFreedWhileEmptyAndTwice)
{
    string_buffer_free(&buffer);
    string_buffer_free(&buffer);
    EXPECT_EQ(buffer.data, nullptr);
}

TEST_F(StringBuffer, IsZeroedByFreeingEvenWithoutData)
{
    string_buffer odd = {nullptr, 7, 9};
    string_buffer_free(&odd);
    EXPECT_EQ(odd.capacity, 0);
    EXPECT_EQ(odd.length, 0U);
}

TEST_F(StringBuffer, AgreesWithAPlainTextOverManyRandomAppends)
{
    RandomTexts texts(71, "ab% \x80\xff\n", 400);
    for (int round = 0; round < 60; ++round) {
        std::string expected;
        for (int i = 0; i < 60; ++i) {
            const std::string text = texts.next();
            expected += text;
            ASSERT_EQ(append(text), expected.size());
            ASSERT_EQ(buffer.data, expected);
            ASSERT_GT(static_cast<std::size_t>(buffer.capacity), expected.size());
        }
        string_buffer_free(&buffer);
    }
}

} // namespace
