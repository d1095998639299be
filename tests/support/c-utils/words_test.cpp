#include "support/c-utils/words.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

using NameFunction = char *(*)(const char *, char *);

/// Runs a function on a name into a block with room for the whole name, and in place.
void expect_word(NameFunction function, const std::string &name, const std::string &expected)
{
    const ExactBuffer source(name);
    const ExactBuffer destination(name.size() + 1);
    EXPECT_EQ(function(source.data(), destination.data()), destination.data());
    EXPECT_EQ(destination.text(), expected) << '"' << name << '"';
    EXPECT_TRUE(destination.intact()) << '"' << name << '"';
    EXPECT_EQ(source.text(), name);

    EXPECT_EQ(function(source.data(), source.data()), source.data());
    EXPECT_EQ(source.text(), expected) << "in place: \"" << name << '"';
}

struct NameCase {
    std::string name;
    std::string word;
};

TEST(LastWordOfName, CopiesTheNameFromItsLastWordOn)
{
    const NameCase cases[] = {
        {"maxValue", "Value"},
        {"max_value", "value"},
        {"max value", "value"},
        {"maxValueOfAll", "All"},
        {"max_value_of_all", "all"},
        {"max_Value", "Value"},
        {"MaxVALUE", "E"},
        {"a9", "a9"},
        {"a_9x", "9x"},
        {"max-value", "max-value"},
        {"max\tvalue", "max\tvalue"},
        {"ab\xc4"
         "c",
         "ab\xc4"
         "c"},
    };
    for (const NameCase &c : cases) {
        expect_word(last_word_of_name, c.name, c.word);
    }
}

TEST(LastWordOfName, LooksFromTheSecondCharacterOn)
{
    for (const char *name : {"", "M", "_", " ", "Max", "_max", " max", "max"}) {
        expect_word(last_word_of_name, name, name);
    }
}

TEST(LastWordOfName, GivesNothingBehindASeparatorAtTheEnd)
{
    for (const char *name : {"max_", "max ", "maxValue_", "a_", "__", "  ", "A_", "max__"}) {
        expect_word(last_word_of_name, name, "");
    }
}

TEST(LastWordOfName, NeedsNoMoreRoomThanItsResult)
{
    const ExactBuffer destination(6);
    EXPECT_STREQ(last_word_of_name("averylongfirst_value", destination.data()), "value");
    EXPECT_TRUE(destination.intact());
}

TEST(LastWordOfName, AgreesWithASearchFromTheEndOnRandomNames)
{
    RandomTexts names(101, "ab_ AZ9\xc4\xff.", 10);
    for (int i = 0; i < 40000; ++i) {
        const std::string name = names.next();
        expect_word(last_word_of_name, name, plain_last_word(name));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(FirstWordOfName, CutsTheNameBeforeItsSecondWord)
{
    const NameCase cases[] = {
        {"maxValue", "max"}, {"max_value", "max"}, {"max value", "max"},
        {"MaxValue", "Max"}, {"max_Value", "max"}, {"maxV", "max"},
        {"max_", "max"},     {"max ", "max"},      {"aB", "a"},
        {"AB", "A"},         {"_B", "_"},          {"__", "_"},
        {"_max", "_max"},    {"_max_x", "_max"},   {" max", " max"},
        {"m9x", "m9x"},      {"a\tb", "a\tb"},     {"\xc4\xc4", "\xc4\xc4"},
    };
    for (const NameCase &c : cases) {
        expect_word(first_word_of_name, c.name, c.word);
    }
}

TEST(FirstWordOfName, CutsNothingWhereNoWordFollows)
{
    for (const char *name : {"", "m", "M", "_", " ", "max", "Max", "max9.-"}) {
        expect_word(first_word_of_name, name, name);
    }
}

TEST(FirstWordOfName, AgreesWithAPlainSearchOnRandomNames)
{
    RandomTexts names(102, "ab_ AZ9\xc4\xff.", 10);
    for (int i = 0; i < 40000; ++i) {
        const std::string name = names.next();
        expect_word(first_word_of_name, name, plain_first_word(name));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(LeadingNonSpaceLength, CountsUpToTheFirstWhiteSpaceOrTheEnd)
{
    EXPECT_EQ(leading_non_space_length(""), 0);
    EXPECT_EQ(leading_non_space_length("abc"), 3);
    EXPECT_EQ(leading_non_space_length("abc def"), 3);
    EXPECT_EQ(leading_non_space_length(" abc"), 0);
    EXPECT_EQ(leading_non_space_length("\x80\xa0\xff\x01\x1f_\tb"), 6);
    for (const char blank : white_space) {
        EXPECT_EQ(leading_non_space_length((std::string("ab") + blank + "c").c_str()), 2);
    }
    EXPECT_EQ(leading_non_space_length(std::string(100000, 'x').c_str()), 100000);
}

TEST(LeadingNonSpaceLength, AgreesWithAPlainSearchOnRandomTexts)
{
    RandomTexts texts(103, "aaaa \t\n\v\f\r\x80\xff.", 8);
    for (int i = 0; i < 20000; ++i) {
        const ExactBuffer text(texts.next());
        const std::size_t expected =
            std::min(text.text().find_first_of(white_space), text.text().size());
        ASSERT_EQ(leading_non_space_length(text.data()), static_cast<int>(expected));
    }
}

struct CompareCase {
    const char *first;
    const char *second;
    int result;
};

TEST(CompareFirstWords, GivesZeroForTheSameWord)
{
    const CompareCase cases[] = {
        {"", "", 0},
        {"abc", "abc", 0},
        {"abc x", "abc y", 0},
        {"abc", "abc y", 0},
        {"abc x", "abc", 0},
        {"abc\tx", "abc\ny", 0},
        {" x", " y", 0},
        {" x", "", 0},
        {"", " y", 0},
        {"", "\v\f\r", 0},
        {"\xff\x80", "\xff\x80 ", 0},
    };
    for (const CompareCase &c : cases) {
        EXPECT_EQ(compare_first_words(c.first, c.second), c.result) << c.first << '/' << c.second;
    }
}

TEST(CompareFirstWords, GivesMinusOneWhenTheSecondEndsSooner)
{
    const CompareCase cases[] = {
        {"abc", "ab", -1},   {"abc", "ab c", -1}, {"abc", "", -1},    {"abc", " abc", -1},
        {"abc", "ab\t", -1}, {"abc", "ab\n", -1}, {"\x01", "\r", -1}, {"abc", "a\v", -1},
        {"abc", "a\f", -1},  {"\xff", "", -1},
    };
    for (const CompareCase &c : cases) {
        EXPECT_EQ(compare_first_words(c.first, c.second), c.result) << c.first << '/' << c.second;
    }
}

TEST(CompareFirstWords, GivesTheDifferenceOfTheFirstDifferingBytesSecondMinusFirst)
{
    const CompareCase cases[] = {
        {"a", "b", 1},       {"b", "a", -1},        {"a", "z", 25},        {"abcz", "abca x", -25},
        {"A", "a", 32},      {"a", "A", -32},       {"abX", "abYc", 1},    {"a", "\xff", 158},
        {"\xff", "a", -158}, {"\x80", "\xff", 127}, {"\x01", "\xff", 254}, {"ab c", "abd", 1},
    };
    // The last pair: the first word ends where the second goes on.
    for (const CompareCase &c : cases) {
        EXPECT_EQ(compare_first_words(c.first, c.second), c.result) << c.first << '/' << c.second;
    }
}

TEST(CompareFirstWords, GivesOneWhenTheSecondGoesOn)
{
    const CompareCase cases[] = {
        {"ab", "abc", 1}, {"ab x", "abc", 1},     {"", "a", 1},
        {" ", "a", 1},    {"ab\n", "ab\x01 ", 1}, {"ab", "ab\xff", 1},
    };
    for (const CompareCase &c : cases) {
        EXPECT_EQ(compare_first_words(c.first, c.second), c.result) << c.first << '/' << c.second;
    }
}

TEST(CompareFirstWords, AgreesWithWholeWordsComparedOnRandomTexts)
{
    RandomTexts texts(104, "aaab \t\x80\xff", 6);
    for (int i = 0; i < 60000; ++i) {
        const ExactBuffer first(texts.next());
        const ExactBuffer second(texts.next());
        ASSERT_EQ(compare_first_words(first.data(), second.data()),
                  plainly_compared(first.text(), second.text()))
            << first.text() << '/' << second.text();
    }
}

} // namespace
