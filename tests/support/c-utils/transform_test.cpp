#include "support/c-utils/transform.h"

#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/c-utils/format.h"
#include "support/error/allocation.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/test_locale.h"
#include "tests/support/c-utils/text_models.h"

namespace {

char *lower(const char *source, char *destination)
{
    string_to_lower(source, destination);
    return destination;
}

struct Example {
    std::string source;
    std::string result;
};

struct Transform {
    const char *name;
    char *(*function)(const char *, char *);
    std::function<std::string(const std::string &)> model;
    std::vector<Example> examples;
    bool in_place;
};

void PrintTo(const Transform &transform, std::ostream *out)
{
    *out << transform.name;
}

const Transform transforms[] = {
    {"string_to_lower",
     lower,
     plainly_lowered,
     {{"", ""},
      {"MixedCASE_09", "mixedcase_09"},
      {"[@`{AZaz", "[@`{azaz"},
      {"\xc4\xdc", "\xc4\xdc"}},
     true},
    {"string_to_upper",
     string_to_upper,
     plainly_raised,
     {{"", ""},
      {"MixedCASE_09", "MIXEDCASE_09"},
      {"[@`{AZaz", "[@`{AZAZ"},
      {"\xe4\xff", "\xe4\xff"}},
     true},
    {"remove_blanks_and_underscores",
     remove_blanks_and_underscores,
     [](const std::string &t) { return without(t, " _"); },
     {{"", ""}, {" _ _", ""}, {"_a b_c ", "abc"}, {"a\tb\nc-d", "a\tb\nc-d"}},
     true},
    {"remove_periods",
     remove_periods,
     [](const std::string &t) { return without(t, "."); },
     {{"", ""}, {"...", ""}, {".a.b..c.", "abc"}, {"a,b", "a,b"}},
     true},
    {"remove_spaces",
     remove_spaces,
     [](const std::string &t) { return without(t, " "); },
     {{"", ""}, {"   ", ""}, {" a b  c ", "abc"}, {"a_b\tc\n", "a_b\tc\n"}},
     true},
    {"line_breaks_to_spaces",
     line_breaks_to_spaces,
     [](const std::string &t) { return replaced(t, "\n\r", "  "); },
     {{"", ""}, {"\r\n", "  "}, {"a\nb\rc\r\n", "a b c  "}, {"a\tb\vc\fd", "a\tb\vc\fd"}},
     true},
    {"underscores_to_spaces",
     underscores_to_spaces,
     [](const std::string &t) { return replaced(t, "_", " "); },
     {{"", ""}, {"__", "  "}, {"_a_b c_", " a b c "}, {"a-b", "a-b"}},
     true},
    {"spaces_to_underscores",
     spaces_to_underscores,
     [](const std::string &t) { return replaced(t, " ", "_"); },
     {{"", ""}, {"  ", "__"}, {" a b_c ", "_a_b_c_"}, {"a\tb\n", "a\tb\n"}},
     true},
    {"keep_identifier_characters",
     keep_identifier_characters,
     identifier_part,
     {{"", ""},
      {"max_Value9", "max_Value9"},
      {" a-b.c%d/e\t", "abcde"},
      {"@[`{/:", ""},
      {"\x80\xc4\xff_", "_"}},
     true},
    {"double_percent_signs",
     double_percent_signs,
     plainly_doubled,
     {{"", ""}, {"%", "%%"}, {"%%", "%%%%"}, {"100% of %s", "100%% of %%s"}, {"abc", "abc"}},
     false},
    {"underscores_to_camel_case",
     underscores_to_camel_case,
     plainly_camel_cased,
     {{"", ""},
      {"__max_value_", "MaxValue"},
      {"max_value", "MaxValue"},
      {"_", ""},
      {"___", ""},
      {"m", "M"},
      {"MAX_vALUE", "MAXVALUE"},
      {"max___value__", "MaxValue"},
      {"max value_x", "Max valueX"},
      {"_9lives_4u", "9lives4u"},
      {"_\xe4_b", "\xe4"
                  "B"},
      {"a_ b", "A b"}},
     true},
};

class TextTransform : public testing::TestWithParam<Transform> {
protected:
    /// Runs the function into exactly the room that the expected text needs, and in place.
    static void expect_result(const std::string &text, const std::string &expected)
    {
        const Transform &transform = GetParam();
        const ExactBuffer source(text);
        const ExactBuffer destination(expected.size() + 1);
        EXPECT_EQ(transform.function(source.data(), destination.data()), destination.data());
        EXPECT_EQ(destination.text(), expected) << '"' << text << '"';
        EXPECT_TRUE(destination.intact()) << '"' << text << '"';
        EXPECT_EQ(source.text(), text);
        if (transform.in_place) {
            EXPECT_EQ(transform.function(source.data(), source.data()), source.data());
            EXPECT_EQ(source.text(), expected) << "in place: \"" << text << '"';
        }
    }
};

TEST_P(TextTransform, GivesTheExpectedTexts)
{
    for (const Example &example : GetParam().examples) {
        expect_result(example.source, example.result);
    }
}

TEST_P(TextTransform, TreatsEveryByteAsItsModel)
{
    for (int byte = 1; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        for (const std::string &text : {std::string(1, c), std::string("x") + c + "x",
                                        std::string("_") + c, std::string(3, c)}) {
            expect_result(text, GetParam().model(text));
        }
    }
}

TEST_P(TextTransform, AgreesWithItsModelOnRandomTexts)
{
    RandomTexts texts(81, "  ..__%%aZz9A\t\n\r\x80\xff", 20);
    for (int i = 0; i < 20000; ++i) {
        const std::string text = texts.next();
        expect_result(text, GetParam().model(text));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(TextTransform, HandlesALongText)
{
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text += "a_B %. \r9_c.";
    }
    expect_result(text, GetParam().model(text));
}

INSTANTIATE_TEST_SUITE_P(All, TextTransform, testing::ValuesIn(transforms),
                         [](const testing::TestParamInfo<Transform> &transform) {
                             return std::string(transform.param.name);
                         });

TEST(StringToLower, WritesTheDestinationAndReturnsNothing)
{
    static_assert(std::is_void_v<decltype(string_to_lower("", nullptr))>);
    const ExactBuffer destination(3);
    string_to_lower("AB", destination.data());
    EXPECT_EQ(destination.text(), "ab");
}

TEST(DoublePercentSigns, GivesAFormatWithoutConversions)
{
    RandomTexts texts(82, "%%sdn.*5 a", 20);
    for (int i = 0; i < 5000; ++i) {
        const std::string text = texts.next();
        const ExactBuffer format(2 * text.size() + 1);
        double_percent_signs(text.c_str(), format.data());
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
        char *printed = format_string_new(format.data());
#pragma GCC diagnostic pop
        ASSERT_EQ(printed, text);
        checked_free(printed);
    }
}

TEST(DoublePercentSigns, NeedsTwiceTheRoomForPercentSignsAlone)
{
    const ExactBuffer destination(2 * 5000 + 1);
    double_percent_signs(std::string(5000, '%').c_str(), destination.data());
    EXPECT_EQ(destination.text(), std::string(10000, '%'));
    EXPECT_TRUE(destination.intact());
}

TEST(CharacterClasses, AreTheStandardLibrarysAskedAboutUnsignedBytes)
{
    const TestLocale locale(german_latin1);
    if (!locale.available()) {
        GTEST_SKIP() << "no ISO 8859-1 locale";
    }
    const ExactBuffer destination(8);
    string_to_lower("\xc4 A", destination.data());
    EXPECT_EQ(destination.text(), "\xe4 a");
    string_to_upper("\xe4 a", destination.data());
    EXPECT_EQ(destination.text(), "\xc4 A");
    keep_identifier_characters("\xe4-\xd7_", destination.data()); // 0xd7 is the sign "times"
    EXPECT_EQ(destination.text(), "\xe4_");
    underscores_to_camel_case("\xe4_\xfc", destination.data());
    EXPECT_EQ(destination.text(), "\xc4\xdc");
}

} // namespace
