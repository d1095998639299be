// Each function on each byte in locales that have letters, capitals and white space above 0x7F. The
// expectation is the platform's class of the unsigned byte; byte 0xFF is the one at which a signed
// character would be the end of a file instead.
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "support/c-utils.h"
#include "support/options.h"
#include "tests/support/c-utils/test_locale.h"

using namespace std::string_literals;

namespace {

/// A byte as the platform classes it.
struct Byte {
    char c;
    bool space, upper, alphanumeric;
    std::string lower, raised;

    explicit Byte(int value)
        : c(static_cast<char>(value)), space(std::isspace(value) != 0),
          upper(std::isupper(value) != 0), alphanumeric(std::isalnum(value) != 0),
          lower(1, static_cast<char>(std::tolower(value))),
          raised(1, static_cast<char>(std::toupper(value)))
    {
    }
    std::string text() const
    {
        return std::string(1, c);
    }
    bool is_one_of(const char *characters) const
    {
        return std::strchr(characters, c) != nullptr;
    }
};

template <typename Check> void for_each_byte(Check check)
{
    for (int value = 1; value <= 255; ++value) {
        SCOPED_TRACE(value);
        check(Byte(value));
    }
}

using Transform = char *(*)(const char *, char *);

std::string transformed(Transform transform, const std::string &source)
{
    char destination[64] = "";
    EXPECT_EQ(transform(source.c_str(), destination), destination);
    return destination;
}

std::string wrapped(std::string text, int width)
{
    text.resize(64);
    wrap_text_in_place(text.data(), width, 0, 0);
    return text.c_str();
}

int parsed_option(const std::string &text, const char *short_options)
{
    std::string element = text;
    char program[] = "prog";
    char *vector[] = {program, element.data(), nullptr};
    option_index = 0;
    option_errors = 0;
    return get_options(2, vector, short_options);
}

void check_case()
{
    for_each_byte([](const Byte &byte) {
        char lowered[4] = "";
        string_to_lower(byte.text().c_str(), lowered);
        EXPECT_EQ(lowered, byte.lower);
        EXPECT_EQ(transformed(string_to_upper, byte.text()), byte.raised);
        const std::string camel =
            byte.c == '_' ? "" : byte.raised + byte.text() + byte.raised + byte.text();
        EXPECT_EQ(transformed(underscores_to_camel_case,
                              byte.text() + byte.text() + "_" + byte.text() + byte.text()),
                  camel);
    });
}

void check_words_of_names()
{
    for_each_byte([](const Byte &byte) {
        const std::string name = "a" + byte.text() + "c";
        const bool separator = byte.is_one_of("_ ");
        EXPECT_EQ(transformed(last_word_of_name, name), separator    ? "c"
                                                        : byte.upper ? byte.text() + "c"
                                                                     : name);
        EXPECT_EQ(transformed(first_word_of_name, name), separator || byte.upper ? "a" : name);
    });
}

void check_identifier_characters()
{
    for_each_byte([](const Byte &byte) {
        EXPECT_EQ(transformed(keep_identifier_characters, "-" + byte.text() + "-"),
                  byte.alphanumeric || byte.c == '_' ? byte.text() : "");
    });
}

void check_white_space()
{
    for_each_byte([](const Byte &byte) {
        std::string text = "a" + byte.text() + "c";
        EXPECT_EQ(leading_non_space_length(text.c_str()), byte.space ? 1 : 3);
        const std::string other = "a" + byte.text() + "d";
        EXPECT_EQ(compare_first_words(text.c_str(), other.c_str()), byte.space ? 0 : 'd' - 'c');
        EXPECT_EQ(compare_first_words("a", text.c_str()), byte.space ? 0 : 1);
        EXPECT_EQ(compare_first_words("abc", text.c_str()) == -1,
                  byte.space || static_cast<unsigned char>(byte.c) == 'a');
        EXPECT_EQ(wrapped("ab" + byte.text() + "cd", 3),
                  byte.space ? "ab\ncd" : "ab" + byte.text() + "cd");
        EXPECT_EQ(normalize_spaces_in_place(text.data()),
                  byte.space ? "a c" : "a" + byte.text() + "c");
    });
}

void check_space_before_numbers()
{
    for_each_byte([](const Byte &byte) {
        float number = 7.0f;
        const bool reads = byte.space || byte.is_one_of("+-.0123456789");
        EXPECT_EQ(parse_float((byte.text() + "5").c_str(), &number), reads ? 1 : 0);
        std::int32_t day = 7;
        const bool is_date = byte.space || byte.is_one_of("+0123");
        EXPECT_EQ(parse_date((byte.text() + "1jan09").c_str(), &day), is_date ? 7 : -1);
    });
}

void check_months()
{
    for_each_byte([](const Byte &byte) {
        char text[] = {byte.c, byte.c, byte.c, byte.c, '\0'};
        EXPECT_EQ(month_from_name(text), 0);
        EXPECT_EQ(text, byte.lower + byte.lower + byte.lower + byte.text());
    });
}

void check_numbers_of_command_lines()
{
    for_each_byte([](const Byte &byte) {
        const bool is_number = byte.space || byte.is_one_of(".0123456789");
        EXPECT_EQ(parsed_option("-5" + byte.text(), "5"), is_number ? -1 : '5');
    });
}

// On purpose: an escaped URL is the same in every locale.
void check_urls()
{
    for_each_byte([](const Byte &byte) {
        const int value = static_cast<unsigned char>(byte.c);
        const bool plain = value < 0x80 && (byte.alphanumeric || byte.is_one_of("$-_.+!*(),"));
        char code[8];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(value));
        EXPECT_EQ(transformed(url_encode, byte.text()), plain ? byte.text() : code);
    });
}

class Locale : public testing::TestWithParam<LocaleKind> {};

} // namespace

TEST_P(Locale, DecidesTheClassOfEachByte)
{
    const TestLocale locale(GetParam());
    if (!locale.available()) {
        GTEST_SKIP() << "localedef cannot make this locale";
    }
    check_case();
    check_words_of_names();
    check_identifier_characters();
    check_white_space();
    check_space_before_numbers();
    check_months();
    check_numbers_of_command_lines();
    check_urls();
}

INSTANTIATE_TEST_SUITE_P(Kinds, Locale,
                         testing::Values(german_latin1, german_latin9, turkish, russian,
                                         space_at_ff),
                         [](const auto &kind) { return std::string(kind.param.name); });

namespace {

std::string upper_cased(const LocaleKind &kind, const std::string &text)
{
    const TestLocale locale(kind);
    return locale.available() ? transformed(string_to_upper, text) : "unavailable";
}

} // namespace

// By hand, from the three character sets.
TEST(ByteFf, IsItsOwnCapitalInLatin1)
{
    const std::string raised = upper_cased(german_latin1, "\xff\xfc");
    if (raised == "unavailable") {
        GTEST_SKIP();
    }
    EXPECT_EQ(raised, "\xff\xdc");
}

TEST(ByteFf, HasACapitalInLatin9)
{
    const std::string raised = upper_cased(german_latin9, "\xff\xfc");
    if (raised == "unavailable") {
        GTEST_SKIP();
    }
    EXPECT_EQ(raised, "\xbe\xdc");
}

TEST(ByteFf, IsACapitalInKoi8)
{
    const TestLocale locale(russian);
    if (!locale.available()) {
        GTEST_SKIP();
    }
    EXPECT_EQ(transformed(last_word_of_name, "a\xff\x62"), "\xff\x62");
    EXPECT_EQ(transformed(first_word_of_name, "a\xff\x62"), "a");
    EXPECT_EQ(transformed(string_to_upper, "\xdf"), "\xff");
}

TEST(TurkishLetterI, HasCapitalsOfItsOwn)
{
    const TestLocale locale(turkish);
    if (!locale.available()) {
        GTEST_SKIP();
    }
    char lowered[8];
    string_to_lower("I\xddQ", lowered);
    EXPECT_STREQ(lowered, "\xfdiq");
    EXPECT_EQ(transformed(string_to_upper, "i\xfdq"), "\xddIQ");
    EXPECT_EQ(transformed(underscores_to_camel_case, "_id"), "\xdd"s + "d");
    std::int32_t day = 0;
    EXPECT_EQ(parse_date("5JUN09", &day), 6) << "no month has an i among its three letters";
}
