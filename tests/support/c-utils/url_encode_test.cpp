#include "support/c-utils/url_encode.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/test_locale.h"
#include "tests/support/c-utils/text_models.h"

namespace {

const std::string plain_bytes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                "$-_.+!*(),";

/// Encodes into a destination that has just the room for the expected text.
void expect_encoded(const std::string &text, const std::string &expected)
{
    const ExactBuffer source(text);
    const ExactBuffer destination(expected.size() + 1);
    EXPECT_EQ(url_encode(source.data(), destination.data()), destination.data());
    EXPECT_EQ(destination.text(), expected);
    EXPECT_TRUE(destination.intact()) << expected;
    EXPECT_EQ(source.text(), text);
}

TEST(UrlEncode, CopiesLettersDigitsAndTheUnreservedSigns)
{
    expect_encoded(plain_bytes, plain_bytes);
    expect_encoded("(x)!", "(x)!");
    expect_encoded("", "");
}

TEST(UrlEncode, WritesEveryOtherByteAsPercentAndTwoUpperCaseDigits)
{
    expect_encoded(" ", "%20");
    expect_encoded("a b/c", "a%20b%2Fc");
    expect_encoded("100%", "100%25");
    expect_encoded("%20", "%2520");
    expect_encoded("~'\"#&:;<=>?@[\\]^`{|}", "%7E%27%22%23%26%3A%3B%3C%3D%3E%3F%40%5B%5C%5D%5E%60"
                                             "%7B%7C%7D");
    expect_encoded("\x01\t\n\r\x1f\x7f", "%01%09%0A%0D%1F%7F");
}

TEST(UrlEncode, WritesBytesAbove127AsUnsigned)
{
    expect_encoded("\x80\xa0\xc3\xe9\xff", "%80%A0%C3%E9%FF");
}

TEST(UrlEncode, TreatsEveryByteAlike)
{
    for (int byte = 1; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        expect_encoded(std::string(1, c), plainly_encoded(c));
    }
}

TEST(UrlEncode, NeedsThreeTimesTheRoomForBytesThatAreAllEncoded)
{
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        expected += "%FF";
    }
    expect_encoded(std::string(5000, '\xff'), expected);
}

TEST(UrlEncode, DoesNotTakeTheLettersOfALocaleAsLetters)
{
    const TestLocale locale(german_latin1);
    if (!locale.available()) {
        GTEST_SKIP() << "no ISO 8859-1 locale";
    }
    for (int byte = 1; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        expect_encoded(std::string(1, c), plainly_encoded(c));
    }
}

TEST(UrlEncode, AgreesWithBytesEncodedOneByOneOnRandomTexts)
{
    RandomTexts texts(91, " a0Z.%/+~\x01\x7f\x80\xff", 16);
    for (int i = 0; i < 40000; ++i) {
        const std::string text = texts.next();
        std::string expected;
        for (const char c : text) {
            expected += plainly_encoded(c);
        }
        expect_encoded(text, expected);
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace
