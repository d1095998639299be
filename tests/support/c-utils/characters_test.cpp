#include "support/c-utils/characters.h"

#include <gtest/gtest.h>
#include <string>

namespace corvella {

namespace {

const std::string digits = "0123456789";
const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// Asks about every byte. \return those of which it is true, from the least to the greatest.
template <typename Question> std::string bytes_of(Question question)
{
    std::string bytes;
    for (int byte = 0; byte <= 255; ++byte) {
        if (question(static_cast<char>(byte))) {
            bytes += static_cast<char>(byte);
        }
    }
    return bytes;
}

TEST(Characters, AreAsciiDigitsAndLetters)
{
    EXPECT_EQ(bytes_of(is_digit), digits);
    EXPECT_EQ(bytes_of(is_ascii_alphanumeric), digits + letters);
}

TEST(Characters, AreSpacesLettersAndCapitalsOfTheCLocale)
{
    EXPECT_EQ(bytes_of(is_space), "\t\n\v\f\r ");
    EXPECT_EQ(bytes_of(is_alphanumeric), digits + letters);
    EXPECT_EQ(bytes_of(is_upper), letters.substr(0, 26));
    EXPECT_EQ(bytes_of([](char c) { return to_lower(c) != c; }), letters.substr(0, 26));
    EXPECT_EQ(bytes_of([](char c) { return to_upper(c) != c; }), letters.substr(26));
    EXPECT_EQ(to_lower('Q'), 'q');
    EXPECT_EQ(to_upper('q'), 'Q');
}

TEST(Characters, ThatAreNoWhiteSpaceAreFoundBehindAllOfIt)
{
    const char text[] = " \t\n\v\f\r x ";
    EXPECT_EQ(skip_white_space(text), text + 7);
    EXPECT_EQ(skip_white_space(text + 7), text + 7);
    EXPECT_EQ(skip_white_space(text + 8), text + 9) << "the end";
}

} // namespace

} // namespace corvella
