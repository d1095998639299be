#include "support/c-utils/spaces.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

struct SpaceCase {
    const char *source;
    const char *result;
};

/// Collapses into a destination that has just the room for the expected text.
void expect_collapsed(const std::string &text, const std::string &expected)
{
    const ExactBuffer source(text);
    const ExactBuffer destination(expected.size() + 1);
    EXPECT_EQ(collapse_spaces(source.data(), destination.data()), destination.data());
    EXPECT_EQ(destination.text(), expected) << '"' << text << '"';
    EXPECT_TRUE(destination.intact()) << '"' << text << '"';
    EXPECT_EQ(source.text(), text);

    EXPECT_EQ(collapse_spaces(source.data(), source.data()), source.data());
    EXPECT_EQ(source.text(), expected) << "in place: \"" << text << '"';
}

void expect_normalized(const std::string &text, const std::string &expected)
{
    const ExactBuffer buffer(text);
    EXPECT_EQ(normalize_spaces_in_place(buffer.data()), buffer.data());
    EXPECT_EQ(buffer.text(), expected) << '"' << text << '"';
    EXPECT_TRUE(buffer.intact()) << '"' << text << '"';
}

TEST(CollapseSpaces, MakesOneSpaceOfARunAndDropsLeadingOnes)
{
    const SpaceCase cases[] = {
        {"", ""},     {" ", ""},           {"     ", ""},   {"a", "a"},
        {" a", "a"},  {"  a  b ", "a b "}, {"a b", "a b"},  {"a          b", "a b"},
        {"a ", "a "}, {"a    ", "a "},     {".  .", ". ."}, {"\x80  \xff", "\x80 \xff"},
    };
    for (const SpaceCase &c : cases) {
        expect_collapsed(c.source, c.result);
    }
}

TEST(CollapseSpaces, KnowsNoOtherWhiteSpaceThanTheSpace)
{
    expect_collapsed("\t\ta\n\nb \t c", "\t\ta\n\nb \t c");
    expect_collapsed("\n  a", "\n a");
    expect_collapsed("_ _", "_ _");
}

TEST(CollapseSpaces, AgreesWithWordsJoinedAgainOnRandomTexts)
{
    RandomTexts texts(61, "   ab.\t_\x80\xff", 16);
    for (int i = 0; i < 40000; ++i) {
        const std::string text = texts.next();
        expect_collapsed(text, plainly_collapsed(text));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(NormalizeSpacesInPlace, TurnsEachWhiteSpaceCharacterIntoASpace)
{
    for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'}) {
        expect_normalized(std::string("a") + blank + "b", "a b");
    }
    expect_normalized("a\x1c\x1f\x7f\x85\xa0\xff"
                      "b",
                      "a\x1c\x1f\x7f\x85\xa0\xff"
                      "b");
}

TEST(NormalizeSpacesInPlace, DropsLeadingWhiteSpace)
{
    const SpaceCase cases[] = {{"", ""},        {" ", ""},      {" \t\n\v\f\r ", ""}, {" a", "a"},
                               {"\n\n a", "a"}, {"  .a", ".a"}, {" .  a", ".  a"},    {"\t", ""}};
    for (const SpaceCase &c : cases) {
        expect_normalized(c.source, c.result);
    }
}

TEST(NormalizeSpacesInPlace, ShrinksARunToOneSpace)
{
    const SpaceCase cases[] = {
        {"a b", "a b"},    {"a  b", "a b"},      {"a \t\n b", "a b"},        {"a   b  c", "a b c"},
        {"a,  b", "a, b"}, {"a!     b", "a! b"}, {"\xff  \x80", "\xff \x80"}};
    for (const SpaceCase &c : cases) {
        expect_normalized(c.source, c.result);
    }
}

TEST(NormalizeSpacesInPlace, KeepsTwoSpacesBehindAFullStop)
{
    const SpaceCase cases[] = {{"A.  B", "A.  B"},     {"A. B", "A. B"},
                               {"A.   B", "A.  B"},    {"A.\t\nB", "A.  B"},
                               {"A.B  C", "A.B C"},    {"A.       B", "A.  B"},
                               {"A. .  B", "A. .  B"}, {".  .  .", ".  .  ."}};
    for (const SpaceCase &c : cases) {
        expect_normalized(c.source, c.result);
    }
}

TEST(NormalizeSpacesInPlace, TreatsTrailingWhiteSpaceAsAnyOther)
{
    const SpaceCase cases[] = {{"a ", "a "},      {"a    ", "a "},  {"a\n", "a "},
                               {"a. ", "a. "},    {"a.  ", "a.  "}, {"a.     ", "a.  "},
                               {"a.b   ", "a.b "}};
    for (const SpaceCase &c : cases) {
        expect_normalized(c.source, c.result);
    }
}

TEST(NormalizeSpacesInPlace, AgreesWithWordsJoinedAgainOnRandomTexts)
{
    RandomTexts texts(62, "   a.._\t\n\r\x80\xff", 18);
    for (int i = 0; i < 60000; ++i) {
        const std::string text = texts.next();
        expect_normalized(text, plainly_normalized(text));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(NormalizeSpacesInPlace, ChangesNothingWhenDoneAgain)
{
    RandomTexts texts(63, "  a.\n", 12);
    for (int i = 0; i < 10000; ++i) {
        const ExactBuffer buffer(texts.next());
        normalize_spaces_in_place(buffer.data());
        const std::string once = buffer.text();
        normalize_spaces_in_place(buffer.data());
        ASSERT_EQ(buffer.text(), once);
    }
}

} // namespace
