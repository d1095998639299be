#include "web/base64.h"

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

#include "tests/web/base64_model.h"

namespace {

/// Encodes into an area with marks behind the last byte that may be written.
std::string encoded(std::string_view source)
{
    const int size = static_cast<int>(source.size());
    const std::size_t room = (source.size() + 2) / 3 * 4 + 1;
    std::string area(room + 16, '~');
    EXPECT_EQ(base64_encode(source.data(), size, area.data()), area.data());
    EXPECT_EQ(area[room - 1], '\0');
    EXPECT_EQ(area.substr(room), std::string(16, '~'));
    return area.c_str();
}

} // namespace

TEST(Base64, EncodesTheExamplesOfItsStandard)
{
    const struct {
        const char *source;
        const char *text;
    } cases[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"Aladdin:open sesame", "QWxhZGRpbjpvcGVuIHNlc2FtZQ=="},
        {":", "Og=="},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(encoded(row.source), row.text);
    }
}

TEST(Base64, ReadsNothingOfASourceOfNoBytes)
{
    for (const int n : {0, -1, INT_MIN}) {
        char area[2] = {'~', '~'};
        EXPECT_EQ(base64_encode(nullptr, n, area), area) << n;
        EXPECT_EQ(area[0], '\0') << n;
        EXPECT_EQ(area[1], '~') << n;
    }
}

TEST(Base64, UsesTheWholeAlphabetInOrder)
{
    std::string source;
    unsigned collected = 0;
    int bits = 0;
    for (unsigned value = 0; value < 64; ++value) {
        collected = collected << 6 | value;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            source += static_cast<char>(collected >> bits & 255);
        }
    }
    EXPECT_EQ(encoded(source), base64_alphabet);
}

TEST(Base64, TakesBytesAsUnsigned)
{
    const struct {
        std::string_view source;
        const char *text;
    } cases[] = {
        {{"\x00", 1}, "AA=="},
        {{"\x00\x00", 2}, "AAA="},
        {{"\x00\x00\x00", 3}, "AAAA"},
        {"\x7f", "fw=="},
        {"\x80", "gA=="},
        {"\xff", "/w=="},
        {"\xff\xff", "//8="},
        {"\xff\xff\xff", "////"},
        {"\x80\x80\x80", "gICA"},
        {{"\x00\xff\x00", 3}, "AP8A"},
        {"\xfb\xef\xbe", "++++"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(encoded(row.source), row.text);
    }
}

TEST(Base64, CanBeReadBackAtEveryLength)
{
    std::mt19937 random(20031);
    for (std::size_t size = 0; size <= 400; ++size) {
        std::string source(size, '\0');
        for (char &byte : source) {
            byte = static_cast<char>(random());
        }
        const std::string text = encoded(source);
        EXPECT_EQ(text.size() % 4, 0u);
        EXPECT_EQ(decoded(text), source);
    }
}

TEST(Base64, BreaksNoLines)
{
    const std::string text = encoded(std::string(30000, '\x01'));
    EXPECT_EQ(text.size(), 40000u);
    EXPECT_EQ(text.find_first_not_of(base64_alphabet), std::string::npos);
}

TEST(Base64, OfNoBytesIsTheEmptyText)
{
    for (const int n : {0, -1, -3, INT_MIN}) {
        std::array<char, 3> area = {'a', 'b', 'c'};
        EXPECT_EQ(base64_encode("source", n, area.data()), area.data());
        EXPECT_EQ(std::string(area.data(), 3), std::string("\0bc", 3)) << n;
    }
}

TEST(Base64EncodedLength, IsFourForEveryThreeBytesBegun)
{
    const struct {
        int n;
        int length;
    } cases[] = {
        {0, 0},
        {1, 4},
        {2, 4},
        {3, 4},
        {4, 8},
        {5, 8},
        {6, 8},
        {7, 12},
        {48, 64},
        {49, 68},
        {1610612733, 2147483644},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(base64_encoded_length(row.n), row.length) << row.n;
    }
}

// Deliberate: signed division truncates towards zero.
TEST(Base64EncodedLength, OfANegativeCountFollowsSignedArithmetic)
{
    const struct {
        int n;
        int length;
    } cases[] = {{-1, 0}, {-2, 0}, {-3, 0}, {-4, 0}, {-5, -4}, {-7, -4}, {-8, -8}};
    for (const auto &row : cases) {
        EXPECT_EQ(base64_encoded_length(row.n), row.length) << row.n;
    }
}

TEST(Base64EncodedLength, WrapsWhereItIsTooLarge)
{
    EXPECT_EQ(base64_encoded_length(1610612734), INT32_MIN);
    EXPECT_EQ(base64_encoded_length(INT_MAX), -1431655764); // 2863311532 less 2 to the 32nd
    EXPECT_EQ(base64_encoded_length(-1610612740), INT32_MIN);
    EXPECT_EQ(base64_encoded_length(-1610612741), 2147483644); // 2 to the 32nd less 2147483652
    EXPECT_EQ(base64_encoded_length(INT_MIN), 1431655768);     // 2 to the 32nd less 2863311528
}
