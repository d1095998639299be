#include <climits>
#include <gtest/gtest.h>
#include <string>

#include "support/c-utils/words.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

/// Expects a word in a block that has just the room for it.
void expect_nth_word(const std::string &text, int n, int offset, const std::string &word)
{
    const ExactBuffer source(text);
    const ExactBuffer destination(word.size() + 1);
    EXPECT_EQ(nth_word(source.data(), n, destination.data()), offset) << n << " of " << text;
    EXPECT_EQ(destination.text(), word) << n << " of " << text;
    EXPECT_TRUE(destination.intact()) << n << " of " << text;
    EXPECT_EQ(source.text(), text);
}

TEST(NthWord, FindsTheWordsBetweenRunsOfDelimiters)
{
    const std::string text = "  one\ttwo\\three ";
    expect_nth_word(text, 0, 2, "one");
    expect_nth_word(text, 1, 6, "two");
    expect_nth_word(text, 2, 10, "three");
    expect_nth_word(text, 3, -1, "");
}

TEST(NthWord, MayOverwriteItsSource)
{
    char text[] = "  one\ttwo\\three ";
    EXPECT_EQ(nth_word(text, 2, text), 10);
    EXPECT_STREQ(text, "three");
    EXPECT_EQ(nth_word(text, 1, text), -1);
    EXPECT_STREQ(text, "");
}

TEST(NthWord, TakesMixedRunsOfDelimitersAsOne)
{
    const std::string text = "\\\n\t a \t\\\n b\n\n";
    expect_nth_word(text, 0, 4, "a");
    expect_nth_word(text, 1, 10, "b");
    expect_nth_word(text, 2, -1, "");
}

TEST(NthWord, KnowsNoOtherDelimiter)
{
    const std::string text = "a\rb\vc\fd/e_f,g\xa0\x80h i";
    expect_nth_word(text, 0, 0, "a\rb\vc\fd/e_f,g\xa0\x80h");
    expect_nth_word(text, 1, 17, "i");
}

TEST(NthWord, CountsANegativeNumberAsZero)
{
    expect_nth_word(" a b", -1, 1, "a");
    expect_nth_word(" a b", INT_MIN, 1, "a");
    expect_nth_word("", -1, -1, "");
}

TEST(NthWord, GivesAnEmptyTextAndMinusOneWithoutSuchAWord)
{
    for (const char *text : {"", " ", " \t\n\\ "}) {
        expect_nth_word(text, 0, -1, "");
        expect_nth_word(text, 1, -1, "");
    }
    expect_nth_word("a", 1, -1, "");
    expect_nth_word("a b", 2, -1, "");
    expect_nth_word("a b", INT_MAX, -1, "");
}

TEST(NthWord, CanBeAskedAgainInAnyOrder)
{
    const std::string text = "x y z";
    expect_nth_word(text, 2, 4, "z");
    expect_nth_word(text, 0, 0, "x");
    expect_nth_word("other words", 1, 6, "words");
    expect_nth_word(text, 1, 2, "y");
}

TEST(NthWord, ReadsSourcesOfUpTo2047Bytes)
{
    expect_nth_word(std::string(2047, 'x'), 0, 0, std::string(2047, 'x'));
    expect_nth_word(std::string(2046, ' ') + "x", 0, 2046, "x");
    expect_nth_word("a " + std::string(2045, 'x'), 1, 2, std::string(2045, 'x'));
}

TEST(NthWord, LooksNoFurtherThanTheFirst2047Bytes)
{
    expect_nth_word(std::string(2048, 'x'), 0, 0, std::string(2047, 'x'));
    expect_nth_word(std::string(5000, 'x'), 0, 0, std::string(2047, 'x'));
    expect_nth_word(std::string(2047, ' ') + "x", 0, -1, "");
    expect_nth_word(std::string(2040, ' ') + "abcdefghijkl", 0, 2040, "abcdefg");
    expect_nth_word("a " + std::string(4998, 'x'), 1, 2, std::string(2045, 'x'));
    expect_nth_word("a" + std::string(4000, ' ') + "b", 1, -1, "");
}

TEST(NthWord, AgreesWithAPlainSplitOnRandomTexts)
{
    RandomTexts texts(111, "abc  \t\n\\\\\r\x80\xff", 20);
    for (int i = 0; i < 30000; ++i) {
        const std::string text = texts.next();
        int n = 0;
        for (const PlacedWord &expected : plainly_split(text)) {
            expect_nth_word(text, n++, expected.offset, expected.word);
        }
        expect_nth_word(text, n, -1, "");
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace
