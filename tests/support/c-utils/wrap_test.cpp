#include "support/c-utils/wrap.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/wrap_model.h"

namespace {

/// Wraps in a block with room for the text, its NUL and \p room more bytes.
void expect_wrapped(const std::string &text, const Layout &layout, const std::string &expected,
                    std::size_t room)
{
    const ExactBuffer buffer(text, room);
    wrap_text_in_place(buffer.data(), layout.width, layout.indent, layout.first_column);
    EXPECT_EQ(buffer.text(), expected) << '"' << text << "\" width " << layout.width << " indent "
                                       << layout.indent << " column " << layout.first_column;
    EXPECT_TRUE(buffer.intact()) << '"' << text << '"';
}

struct WrapCase {
    std::string text;
    Layout layout;
    std::string expected;
    std::size_t breaks;
};

template <std::size_t n> void expect_all(const WrapCase (&cases)[n])
{
    for (const WrapCase &c : cases) {
        const std::size_t indent = static_cast<std::size_t>(std::max(c.layout.indent, 0));
        expect_wrapped(c.text, c.layout, c.expected, c.breaks == 0 ? 0 : c.breaks * indent);
    }
}

TEST(WrapTextInPlace, LeavesATextThatIsNotLongerThanTheWidth)
{
    const WrapCase cases[] = {
        {"", {10, 2, 0}, "", 0},
        {"", {0, 0, 0}, "", 0},
        {"ab cd", {5, 0, 0}, "ab cd", 0},
        {"ab cd", {6, 0, 0}, "ab cd", 0},
        {" ab cd", {10, 3, 4}, " ab cd", 0},
        {"a\nb", {3, 0, 0}, "a\nb", 0},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, BreaksAtTheLastBlankThatIsNotBehindTheWidth)
{
    const WrapCase cases[] = {
        {"ab cd", {4, 0, 0}, "ab\ncd", 1},
        {"ab cd", {2, 0, 0}, "ab\ncd", 1}, // the blank stands just at the width
        {"aa bb cc", {5, 0, 0}, "aa bb\ncc", 1},
        {"aa bb cc", {4, 0, 0}, "aa\nbb\ncc", 2},
        {"aa bb cc dd", {6, 0, 0}, "aa bb\ncc dd", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, CountsTheLineFeedTowardsTheNextLine)
{
    const WrapCase cases[] = {
        {"aa bb cc", {5, 0, 0}, "aa bb\ncc", 1},
        {"aaaaa bb ccc", {6, 0, 0}, "aaaaa\nbb\nccc", 2}, // "bb ccc" is six, the line feed one
        {"aaaaa bb cc", {6, 0, 0}, "aaaaa\nbb cc", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, IndentsEveryLineButTheFirst)
{
    const WrapCase cases[] = {
        {"aaa bbb ccc", {8, 2, 0}, "aaa bbb\n  ccc", 1},
        {"aaa bbb ccc", {6, 2, 0}, "aaa\n  bbb\n  ccc", 2},
        {"aaa bbb ccc", {10, 3, 0}, "aaa bbb\n   ccc", 1},
        {"aaa bbb cc d", {9, 4, 0}, "aaa bbb\n    cc d", 1},
        {"aaa bbb cc d", {8, 4, 0}, "aaa bbb\n    cc\n    d", 2},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, ReplacesAWholeRunOfWhiteSpace)
{
    const WrapCase cases[] = {
        {"aaa    bbb", {5, 0, 0}, "aaa  \nbbb", 1}, // what stands before the break stays
        {"aaa    bbb", {3, 0, 0}, "aaa\nbbb", 1},
        {"aaa \t\n\v\f\r bbb", {3, 1, 0}, "aaa\n bbb", 1},
        {"aaa      ", {3, 0, 0}, "aaa\n", 1},
        {"aaa ", {3, 2, 0}, "aaa\n  ", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, TakesEveryWhiteSpaceCharacterForABreakAndNoOther)
{
    for (const char blank : white_space) {
        expect_wrapped(std::string("aaa") + blank + "bbb", {4, 0, 0}, "aaa\nbbb", 0);
    }
    expect_wrapped("aa\xa0\x85_-bbb", {4, 0, 0}, "aa\xa0\x85_-bbb", 0);
}

TEST(WrapTextInPlace, LeavesAWordLongerThanTheLineWhole)
{
    const WrapCase cases[] = {
        {"aaaaaaaa", {3, 0, 0}, "aaaaaaaa", 0},
        {"aaaaaaaa bb", {3, 0, 0}, "aaaaaaaa\nbb", 1},
        {"aaaaaaaa bbbbbbb c", {3, 1, 0}, "aaaaaaaa\n bbbbbbb\n c", 2},
        {"a bbbbbbbb", {3, 0, 0}, "a\nbbbbbbbb", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, DoesNotBreakWithinTheIndentOfTheFirstLine)
{
    // The lowest break is above the indent also where nothing was indented yet.
    const WrapCase cases[] = {
        {"a b cccccc d", {5, 3, 0}, "a b cccccc\n   d", 1},
        {"abc dd eeee", {5, 3, 0}, "abc dd\n   eeee", 1}, // index 3 is not above 3
        {"abcd ee", {5, 3, 0}, "abcd\n   ee", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, TakesTheFirstColumnOffTheFirstLineOnly)
{
    const WrapCase cases[] = {
        {"aa bb cc dd", {8, 0, 3}, "aa bb\ncc dd", 1},
        {"aa bb cc dd ee", {9, 0, 6}, "aa\nbb cc dd\nee", 2},
        {"a b", {5, 2, 3}, "a\n  b", 1},
        {"abc de", {9, 5, 3}, "abc de", 0},
        {"abc def", {9, 5, 3}, "abc\n     def", 1}, // the lowest break is 0, not the indent
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, StartsOnAFreshLineWhenNothingFitsBehindTheFirstColumn)
{
    const WrapCase cases[] = {
        {" aaaa bb", {6, 0, 4}, "\naaaa\nbb", 2},
        {" aaaa bb", {9, 0, 6}, "\naaaa bb", 1},
        {"   aaaa", {5, 2, 5}, "\n  aaaa", 1},
        {" aa", {5, 0, 5}, "\naa", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, OverwritesTheFirstCharacterEvenOfATextThatDoesNotBeginWithABlank)
{
    // Deliberate: callers pass a text that begins with a blank.
    const WrapCase cases[] = {
        {"Xaaaa bb", {9, 1, 6}, "\n aaaa bb", 1},
        {"X   aaaa", {6, 0, 6}, "\naaaa", 1},
        {"X", {4, 0, 4}, "\n", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, StartsOnAFreshLineWhenTheFirstColumnIsBeyondTheWidth)
{
    const WrapCase cases[] = {
        {" aa bb", {6, 0, 9}, "\naa bb", 1},
        {" aa bb", {5, 0, INT_MAX}, "\naa\nbb", 2},
        {" aa bb", {INT_MIN, 0, INT_MAX}, "\naa\nbb", 2},
        {" ", {3, 1, 9}, "\n ", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, HasNoFirstCharacterToBreakInAnEmptyText)
{
    const WrapCase cases[] = {
        {"", {5, 3, 9}, "", 0},
        {"", {INT_MIN, 3, INT_MAX}, "", 0},
        {"", {-1, 3, 0}, "", 0},
        {"", {INT_MIN, INT_MAX, INT_MIN}, "", 0},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, WidensTheFirstLineByANegativeFirstColumn)
{
    const WrapCase cases[] = {
        {"aa bb cc dd", {5, 0, -3}, "aa bb cc\ndd", 1},
        {"aa bb cc dd", {5, 0, -6}, "aa bb cc dd", 0},
        {"aa bb cc dd", {INT_MAX, 0, INT_MIN}, "aa bb cc dd", 0},
        {"aa bb cc dd", {5, 0, INT_MIN}, "aa bb cc dd", 0},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, BreaksBehindEveryWordWhenTheWidthIsOneOrLess)
{
    for (const int width : {1, 0, -1, -100, INT_MIN}) {
        expect_wrapped("aa bb  cc", {width, 0, 0}, "aa\nbb\ncc", 0);
        expect_wrapped("aa bb  cc", {width, 2, 0}, "aa\n  bb\n  cc", 4);
        expect_wrapped("aaaa", {width, 2, 0}, "aaaa", 0);
    }
    expect_wrapped(" aa bb", {0, 1, 0}, "\n aa\n bb", 2);
    expect_wrapped(" aa bb", {-5, 0, 0}, "\naa\nbb", 0);
}

TEST(WrapTextInPlace, EndsWithAnIndentThatIsNotBelowTheWidth)
{
    const WrapCase cases[] = {
        {"aa bb cc", {2, 2, 0}, "aa\n  bb\n  cc", 2},
        {"aa bb cc", {2, 7, 0}, "aa\n       bb\n       cc", 2},
        {"aa bb cc", {4, 4, 0}, "aa bb\n    cc", 1},
        {"aa bb ", {2, 9, 0}, "aa\n         bb\n         ", 2},
        {"aaaaaa", {2, INT_MAX, 0}, "aaaaaa", 0},
        {"aaaaaa", {INT_MIN, INT_MAX, INT_MIN}, "aaaaaa", 0},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, TakesANegativeIndentAsZero)
{
    for (const int indent : {-1, -5, INT_MIN}) {
        expect_wrapped("aa bb cc", {5, indent, 0}, "aa bb\ncc", 0);
        expect_wrapped(" aa bb", {2, indent, 0}, " aa\nbb", 0);
        expect_wrapped(" aaaa", {2, indent, 0}, " aaaa", 0); // index 0 is no break
    }
}

TEST(WrapTextInPlace, WrapsATextOfBlanksOnly)
{
    const WrapCase cases[] = {
        {"     ", {3, 0, 0}, "   \n", 1}, {"     ", {3, 2, 0}, "   \n  ", 1},
        {"     ", {3, 0, 3}, "\n", 1},    {"     ", {0, 0, 0}, "\n", 1},
        {"\n\n\n", {1, 0, 0}, "\n\n", 1},
    };
    expect_all(cases);
}

TEST(WrapTextInPlace, WrapsALongText)
{
    std::string text;
    std::string expected;
    for (int i = 0; i < 4000; ++i) {
        text += i == 0 ? "word" : " word";
        expected += i == 0 ? "word" : "\n word";
    }
    expect_wrapped(text, {7, 1, 0}, expected, 3999);
}

TEST(WrapTextInPlace, AgreesWithALineByLineWrapOnRandomTexts)
{
    RandomTexts texts(121, "aaab  \t\n\x80\xff.", 30);
    for (int i = 0; i < 120000; ++i) {
        const std::string text = texts.next();
        const Layout layout = {static_cast<int>(texts.below(16)) - 3,
                               static_cast<int>(texts.below(9)) - 2,
                               static_cast<int>(texts.below(20)) - 6};
        const Wrapped expected = plainly_wrapped(text, layout);
        const auto indent = static_cast<std::size_t>(std::max(layout.indent, 0));
        expect_wrapped(text, layout, expected.text, expected.breaks * indent);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(WrapTextInPlace, AgreesWithALineByLineWrapAtTheEndsOfTheIntegers)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 5, INT_MAX - 1, INT_MAX};
    RandomTexts texts(122, "aab  \t", 12);
    for (int i = 0; i < 40000; ++i) {
        const std::string text = texts.next();
        const Layout layout = {extremes[texts.below(8)], extremes[texts.below(6)],
                               extremes[texts.below(8)]};
        const Wrapped expected = plainly_wrapped(text, layout);
        const auto indent = static_cast<std::size_t>(std::max(layout.indent, 0));
        expect_wrapped(text, layout, expected.text, expected.breaks * indent);
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace
