#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "support/error.h"
#include "tests/support/error/facility_test.h"
#include "tests/support/error/message_lines.h"

namespace {

constexpr char guard = '\x5a';

/// What format_message_line() left in a buffer that is followed and preceded by guard bytes.
struct Formatted {
    int result;
    std::string line; ///< up to the NUL
    bool guards_kept; ///< nothing was written outside the buffer
    bool terminated;  ///< there is a NUL inside the buffer
};

Formatted format_line(int level, const std::string &text, int size)
{
    const std::size_t room = size > 0 ? static_cast<std::size_t>(size) : 0;
    const std::size_t margin = 64;
    std::string area = many(margin + room + margin, guard);
    Formatted formatted{};
    formatted.result = format_message_line(level, text.c_str(), area.data() + margin, size);
    formatted.guards_kept = area.substr(0, margin) == many(margin, guard) &&
                            area.substr(margin + room) == many(margin, guard);
    const std::string buffer = area.substr(margin, room);
    formatted.terminated = buffer.find('\0') != std::string::npos;
    formatted.line = buffer.substr(0, buffer.find('\0'));
    return formatted;
}

TEST(FormatMessageLine, HoldsLabelTextAndBellOfTheLevel)
{
    for (const LineCase &c : line_cases) {
        const Formatted formatted = format_line(c.level, c.text, 100);
        EXPECT_EQ(formatted.line, c.line) << c.level;
        EXPECT_EQ(formatted.result, static_cast<int>(std::strlen(c.line))) << c.level;
        EXPECT_TRUE(formatted.guards_kept) << c.level;
    }
}

TEST(FormatMessageLine, KeepsAtMostTwentyCharactersLessThanTheBuffer)
{
    for (const std::size_t length : {79U, 80U, 81U, 100U, 5000U}) {
        const Formatted formatted = format_line(9, counting_text(length), 100);
        const std::size_t kept = length < 80 ? length : 80;
        EXPECT_EQ(formatted.line, "Error: " + counting_text(kept) + "\x07") << length;
        EXPECT_EQ(formatted.result, static_cast<int>(kept) + 8) << length;
    }
}

TEST(FormatMessageLine, KeepsNoMoreThanThatWhenTheLabelIsShort)
{
    // Deliberate: the 20 bytes are held back even where no label and no bell need them.
    EXPECT_EQ(format_line(1, counting_text(100), 100).line, counting_text(80));
}

TEST(FormatMessageLine, HasNoCapOfItsOwnInALargeBuffer)
{
    EXPECT_EQ(format_line(10, counting_text(5000), 5020).line,
              "Fatal Error: " + counting_text(5000) + "\x07");
    EXPECT_EQ(format_line(10, counting_text(5000), 5019).line,
              "Fatal Error: " + counting_text(4999) + "\x07");
}

TEST(FormatMessageLine, DropsNewlinesBeforeItCapsTheText)
{
    EXPECT_EQ(format_line(9, many(80) + "\n\n\n", 100).line, "Error: " + many(80) + "\x07");
    EXPECT_EQ(format_line(9, many(79) + "\nb", 100).line, "Error: " + many(79) + "\n\x07");
}

struct SmallCase {
    int size;
    int level;
    const char *line;
};

// clang-format off
const SmallCase small_cases[] = {
    {22, 9, "Error: 01\x07"},
    {22, 10, "Fatal Error: 01\x07"},
    {22, 6, "\x07" "01"},
    {22, 1, "01"},
    {21, 9, "Error: 0\x07"},
    {21, 10, "Fatal Error: 0\x07"},
    {21, 2, "Info: 0"},
    {20, 10, "Fatal Error: \x07"},
    {20, 9, "Error: \x07"},
    {20, 2, "Info: "},
    {20, 1, ""},
    {20, 6, "\x07"},
    {19, 10, "Fatal Error: \x07"},
    {15, 10, "Fatal Error: \x07"},
    {14, 10, "Fatal Error: "},
    {13, 10, "Fatal Error:"},
    {8, 9, "Error: "},
    {7, 9, "Error:"},
    {3, 9, "Er"},
    {2, 9, "E"},
    {2, 6, "\x07"},
    {2, 1, ""},
    {1, 9, ""},
    {1, 6, ""},
    {1, 1, ""},
};
// clang-format on

TEST(FormatMessageLine, CutsTheLineToASmallBufferAndReturnsWhatIsStored)
{
    for (const SmallCase &c : small_cases) {
        const Formatted formatted = format_line(c.level, "0123456789", c.size);
        EXPECT_EQ(formatted.line, c.line) << c.size << " " << c.level;
        EXPECT_EQ(formatted.result, static_cast<int>(std::strlen(c.line))) << c.size;
    }
}

TEST(FormatMessageLine, NeverWritesPastItsBufferAndAlwaysTerminatesIt)
{
    for (int level = -1; level <= 11; ++level) {
        for (int size = 1; size <= 64; ++size) {
            for (const char *text : {"", "0", "0123456789\n",
                                     "0123456789012345678901234567890123"
                                     "4567890123456789012345678901234"}) {
                const Formatted formatted = format_line(level, text, size);
                ASSERT_TRUE(formatted.guards_kept) << level << " " << size << " " << text;
                ASSERT_TRUE(formatted.terminated) << level << " " << size << " " << text;
                ASSERT_EQ(formatted.result, static_cast<int>(formatted.line.size()));
            }
        }
    }
}

TEST(FormatMessageLine, WritesNothingIntoABufferOfNoBytes)
{
    for (const int size : {0, -1, -19, -20, -21, -1000, INT_MIN, INT_MIN + 19, INT_MIN + 20}) {
        for (const int level : {1, 6, 9, 10}) {
            const Formatted formatted = format_line(level, "disk", size);
            EXPECT_TRUE(formatted.guards_kept) << size;
            EXPECT_EQ(formatted.result, 0) << size;
        }
    }
}

TEST(FormatMessageLine, ReadsNothingOfALongTextBehindTheCap)
{
    const std::string text = many(std::size_t{3} * 1024 * 1024, 'x');
    EXPECT_EQ(format_line(2, text, 30).line, "Info: " + many(10, 'x'));
}

TEST(FormatMessageLine, LeavesTheMessageCounterAlone)
{
    const std::int32_t before = message_count();
    format_line(9, "disk", 100);
    EXPECT_EQ(message_count(), before);
}

} // namespace
