#include "support/c-utils/replace.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

/// Replaces into a destination that has just the room for the expected text.
void expect_replaced(const std::string &pattern, const std::string &replacement,
                     const std::string &source, const Replaced &expected)
{
    const ExactBuffer pattern_text(pattern);
    const ExactBuffer replacement_text(replacement);
    const ExactBuffer source_text(source);
    const ExactBuffer destination(expected.text.size() + 1);
    const char *rest = replace_all_substrings(pattern_text.data(), replacement_text.data(),
                                              source_text.data(), destination.data());
    EXPECT_EQ(destination.text(), expected.text) << pattern << " in " << source;
    EXPECT_EQ(rest - destination.data(), static_cast<std::ptrdiff_t>(expected.rest))
        << pattern << " in " << source;
    EXPECT_TRUE(destination.intact()) << pattern << " in " << source;
    EXPECT_EQ(source_text.text(), source);
}

TEST(ReplaceAllSubstrings, ReplacesEachOccurrence)
{
    expect_replaced("b", "xy", "abcab", {"axycaxy", 7});
    expect_replaced("ab", "", "abcabd", {"cd", 1});
    expect_replaced("abc", "x", "abcabcabc", {"xxx", 3});
    expect_replaced("a", "bb", "aaa", {"bbbbbb", 6});
    expect_replaced(" ", "%20", " a b ", {"%20a%20b%20", 11});
    expect_replaced("\xff", "\x80", "a\xff\xff", {"a\x80\x80", 3});
}

TEST(ReplaceAllSubstrings, ReplacesTwoLettersOfThreeOnce)
{
    expect_replaced("aa", "b", "aaa", {"ba", 1});
    expect_replaced("aa", "b", "aaaaa", {"bba", 2});
}

TEST(ReplaceAllSubstrings, NeverSearchesAReplacementAgain)
{
    expect_replaced("a", "aa", "aba", {"aabaa", 5});
    expect_replaced("ab", "a", "abb", {"ab", 1});
    expect_replaced("ab", "b", "aab", {"ab", 2});
}

TEST(ReplaceAllSubstrings, ReturnsWhereTheRestWasWritten)
{
    // Deliberate: not the start of the destination.
    expect_replaced("=", "==", "a=b=rest", {"a==b==rest", 6});
}

TEST(ReplaceAllSubstrings, ReturnsThePlaceOfTheNulWhenTheSourceEndsInThePattern)
{
    expect_replaced("b", "xyz", "ab", {"axyz", 4});
}

TEST(ReplaceAllSubstrings, CopiesASourceWithoutThePatternAndReturnsTheDestination)
{
    expect_replaced("x", "y", "abc", {"abc", 0});
    expect_replaced("abcd", "y", "abc", {"abc", 0});
    expect_replaced("abd", "y", "abc", {"abc", 0});
    expect_replaced("A", "y", "abc", {"abc", 0});
    expect_replaced("x", "y", "", {"", 0});
}

TEST(ReplaceAllSubstrings, FindsAPatternThatIsTheWholeSource)
{
    expect_replaced("abc", "", "abc", {"", 0});
    expect_replaced("abc", "z", "abc", {"z", 1});
}

TEST(ReplaceAllSubstrings, TakesAnEmptyPatternAsOneThatOccursNowhere)
{
    expect_replaced("", "x", "abc", {"abc", 0});
    expect_replaced("", "x", "", {"", 0});
}

TEST(ReplaceAllSubstrings, HandlesLongTexts)
{
    std::string source;
    std::string expected;
    for (int i = 0; i < 30000; ++i) {
        source += "ab";
        expected += "aXYZ";
    }
    expect_replaced("b", "XYZ", source, {expected, expected.size()});
}

TEST(ReplaceAllSubstrings, WorksInPlaceWhenTheReplacementIsNotLonger)
{
    const ExactBuffer text("one two two three");
    const char *rest = replace_all_substrings("two", "2", text.data(), text.data());
    EXPECT_EQ(text.text(), "one 2 2 three");
    EXPECT_EQ(rest - text.data(), 7);
    EXPECT_TRUE(text.intact());
}

TEST(ReplaceAllSubstrings, AgreesWithAPlainReplacementOnRandomTexts)
{
    RandomTexts texts(51, "aab\x80", 14);
    RandomTexts patterns(52, "aab\x80", 3);
    for (int i = 0; i < 30000; ++i) {
        const std::string pattern = "a" + patterns.next();
        const std::string replacement = patterns.next();
        const std::string source = texts.next();
        expect_replaced(pattern, replacement, source,
                        plain_replacement(pattern, replacement, source));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(ReplaceAllSubstrings, AgreesWithAPlainReplacementInPlace)
{
    RandomTexts texts(53, "aab", 20);
    RandomTexts patterns(54, "ab", 2);
    for (int i = 0; i < 20000; ++i) {
        const std::string pattern = patterns.next() + "a";
        const std::string replacement = patterns.next().substr(0, pattern.size());
        const std::string source = texts.next();
        const Replaced expected = plain_replacement(pattern, replacement, source);
        const ExactBuffer text(source);
        const char *rest =
            replace_all_substrings(pattern.c_str(), replacement.c_str(), text.data(), text.data());
        ASSERT_EQ(text.text(), expected.text) << pattern << " in " << source;
        ASSERT_EQ(rest - text.data(), static_cast<std::ptrdiff_t>(expected.rest));
        ASSERT_TRUE(text.intact());
    }
}

} // namespace
