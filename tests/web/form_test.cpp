#include "web/form.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/web/form_model.h"

namespace {

std::string repeated(const std::string &text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// The body of a form whose fields are these names and values, by turns.
std::string body_of(const std::vector<std::string> &texts)
{
    std::vector<FormField> fields;
    for (std::size_t i = 0; i + 1 < texts.size(); i += 2) {
        fields.push_back({texts[i].c_str(), texts[i + 1].c_str()});
    }
    std::string header;
    std::string body;
    build_form_body(static_cast<int>(fields.size()), fields.data(), header, body);
    return body;
}

/// What a value becomes in a body of its own.
std::string escaped_value(const std::string &value)
{
    const std::string body = body_of({"v", value});
    EXPECT_EQ(body.substr(0, 2), "v=");
    return body.substr(2);
}

std::string escaped(const std::string &source)
{
    std::string area(3 * source.size() + 1 + 16, '~');
    EXPECT_EQ(form_escape(area.data(), source.c_str()), area.data());
    const std::string text = area.c_str();
    EXPECT_EQ(area.substr(text.size() + 1), std::string(area.size() - text.size() - 1, '~'));
    return text;
}

/// The destination's bytes, all of them, behind a bounded escape into an area filled with "~".
std::string bounded_area(const std::string &source, int limit, std::size_t room)
{
    // A block of its own, exactly as large as promised, so that the sanitizers see both ends.
    const std::unique_ptr<char[]> area(new char[room]);
    std::fill_n(area.get(), room, '~');
    EXPECT_EQ(form_escape_bounded(area.get(), source.c_str(), limit), area.get());
    return std::string(area.get(), room);
}

std::size_t promised_room(int limit)
{
    return limit < 1 ? 1 : 3 * static_cast<std::size_t>(limit) + 2;
}

} // namespace

TEST(FormBody, JoinsNamesAndValues)
{
    EXPECT_EQ(body_of({"product", "A B", "v", "1.0"}), "product=A%20B&v=1%2e0");
    EXPECT_EQ(body_of({"a", "1"}), "a=1");
    EXPECT_EQ(body_of({"a", "1", "b", "2", "c", "3"}), "a=1&b=2&c=3");
    EXPECT_EQ(body_of({"", ""}), "=");
    EXPECT_EQ(body_of({"", "", "", ""}), "=&=");
    EXPECT_EQ(body_of({"a=b", "c&d"}), "a%3db=c%26d");
}

TEST(FormBody, KeepsTheOrderAndRepeatedNames)
{
    EXPECT_EQ(body_of({"b", "1", "a", "2", "b", "3"}), "b=1&a=2&b=3");
}

TEST(FormBody, AnnouncesItsTypeAndLength)
{
    const FormField fields[] = {{"product", "A B"}, {"v", "1.0"}};
    std::string header;
    std::string body;
    build_form_body(2, fields, header, body);
    EXPECT_EQ(body, "product=A%20B&v=1%2e0");
    EXPECT_EQ(header, "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 21");
}

TEST(FormBody, WithoutFieldsIsEmpty)
{
    for (const int count : {0, -1}) {
        std::string header = "old";
        std::string body = "old";
        build_form_body(count, nullptr, header, body);
        EXPECT_EQ(body, "");
        EXPECT_EQ(header, "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 0");
    }
}

TEST(FormBody, ReplacesBothTexts)
{
    const FormField field = {"a", "1"};
    std::string header = "an old header that is longer than the new one is going to be ........";
    std::string body = "an old body";
    build_form_body(1, &field, header, body);
    EXPECT_EQ(body, "a=1");
    EXPECT_EQ(header, "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 3");
}

TEST(FormBody, CountsEveryByteOfALongBody)
{
    const std::string value(1000, 'x');
    const std::vector<FormField> fields(2000, FormField{"n", value.c_str()});
    std::string header;
    std::string body;
    build_form_body(2000, fields.data(), header, body);
    EXPECT_EQ(body + "&", repeated("n=" + value + "&", 2000));
    EXPECT_EQ(header, "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 2005999");
}

TEST(FormBody, EndsATextAtItsThresholds)
{
    // Nothing longer was written before, so a refused escape leaves nothing behind.
    const struct {
        std::string value;
        std::string text;
    } cases[] = {
        // Plain characters stop at a count of 1023.
        {std::string(1022, 'a'), std::string(1022, 'a')},
        {std::string(1023, 'a'), std::string(1023, 'a')},
        {std::string(1024, 'a'), std::string(1023, 'a')},
        {std::string(5000, 'a'), std::string(1023, 'a')},
        // An escape begins at a count of up to 1020.
        {std::string(1019, 'a') + ".", std::string(1019, 'a') + "%2e"},
        {std::string(1019, 'a') + ".bc", std::string(1019, 'a') + "%2eb"},
        {std::string(1019, 'a') + "..", std::string(1019, 'a') + "%2e"},
        {std::string(1020, 'a') + ".", std::string(1020, 'a') + "%2e"},
        {std::string(1020, 'a') + ".b", std::string(1020, 'a') + "%2e"},
        {std::string(1021, 'a') + ".b", std::string(1021, 'a')},
        {std::string(1022, 'a') + ".b", std::string(1022, 'a')},
        {std::string(1023, 'a') + ".b", std::string(1023, 'a')},
        {std::string(341, '.'), repeated("%2e", 341)},
        {std::string(342, '.'), repeated("%2e", 341)},
        {"a" + std::string(341, '.'), "a" + repeated("%2e", 340)},
        // A space begins at the same count but adds only 1.
        {std::string(1019, 'a') + " b", std::string(1019, 'a') + "%20b"},
        {std::string(1020, 'a') + " bcd", std::string(1020, 'a') + "%20bc"},
        {std::string(1021, 'a') + " b", std::string(1021, 'a')},
        {std::string(1020, ' ') + ".b", repeated("%20", 1020) + "%2e"},
        {std::string(1021, ' ') + "bcd", repeated("%20", 1021) + "bc"},
        {std::string(1021, ' ') + "b.", repeated("%20", 1021) + "b"},
        {std::string(2000, ' '), repeated("%20", 1021)},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(escaped_value(row.value), row.text) << row.value.size() << row.value.back();
        EXPECT_EQ(body_of({row.value, ""}), row.text + "=") << row.value.size();
    }
}

TEST(FormBody, WritesTwoThousandSpacesAs3063Characters)
{
    EXPECT_EQ(escaped_value(std::string(2000, ' ')).size(), 3063u);
}

TEST(FormBody, BoundsEveryNameAndValueByItself)
{
    const std::string text(1023, 'a');
    EXPECT_EQ(body_of({text + "b", text + "b", text + "b", text + "b"}),
              text + "=" + text + "&" + text + "=" + text);
}

// Deliberate: a refused escape keeps one byte of what the area held before.
TEST(FormBody, KeepsAByteOfAnEarlierTextWhereAnEscapeIsRefused)
{
    const std::string letters(1021, 'a');
    // 1021 is one more than 340 times the three characters of an escaped space.
    EXPECT_EQ(body_of({"n", std::string(2000, ' '), "m", letters + "."}),
              "n=" + repeated("%20", 1021) + "&m=" + letters + "2");
    EXPECT_EQ(body_of({"n", std::string(2000, ' '), "m", letters + "b."}),
              "n=" + repeated("%20", 1021) + "&m=" + letters + "b0");
    EXPECT_EQ(body_of({"n", std::string(1020, 'a') + "xyz", "m", letters + " "}),
              "n=" + std::string(1020, 'a') + "xyz&m=" + letters + "y");
}

TEST(FormBody, KeepsAByteOfANameInItsValueAndOfAValueInTheNextName)
{
    const std::string letters(1021, 'a');
    EXPECT_EQ(body_of({std::string(1023, 'x'), letters + "."}),
              std::string(1023, 'x') + "=" + letters + "x");
    EXPECT_EQ(body_of({"n", std::string(1023, 'x'), letters + ".", "v"}),
              "n=" + std::string(1023, 'x') + "&" + letters + "x=v");
}

TEST(FormBody, EndsWhereTheEarlierTextEndedBehindARefusedEscape)
{
    const std::string letters(1021, 'a');
    EXPECT_EQ(body_of({"n", std::string(1021, 'x'), "m", letters + "."}),
              "n=" + std::string(1021, 'x') + "&m=" + letters);
    // The shorter text in between ends before the byte in question and leaves it alone.
    EXPECT_EQ(
        body_of({"n", std::string(1023, 'x'), "m", std::string(500, 'y'), "k", letters + "."}),
        "n=" + std::string(1023, 'x') + "&m=" + std::string(500, 'y') + "&k=" + letters + "x");
}

TEST(FormBody, KeepsNoByteOfAnEarlierCall)
{
    const std::string letters(1021, 'a');
    body_of({"n", std::string(2000, ' ')});
    EXPECT_EQ(body_of({"m", letters + "."}), "m=" + letters);
}

TEST(FormEscape, TreatsEveryByteByItsClass)
{
    for (int byte = 1; byte < 256; ++byte) {
        const std::string source(1, static_cast<char>(byte));
        const std::string letters =
            "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        std::string text = source;
        if (letters.find(source) == std::string::npos) {
            text = {'%', "0123456789abcdef"[byte / 16], "0123456789abcdef"[byte % 16]};
        }
        EXPECT_EQ(escaped(source), text);
        EXPECT_EQ(escaped_value(source), text);
        EXPECT_EQ(bounded_area(source, 100, 302).c_str(), text);
    }
}

TEST(FormEscape, GivesTheEscapesOfSomeBytes)
{
    EXPECT_EQ(escaped("a b"), "a%20b");
    EXPECT_EQ(escaped("-_.~*+"), "%2d%5f%2e%7e%2a%2b");
    EXPECT_EQ(escaped("\x01\x7f\x80\xff"), "%01%7f%80%ff");
    EXPECT_EQ(escaped("%20"), "%2520");
    EXPECT_EQ(escaped("@[`{/:"), "%40%5b%60%7b%2f%3a");
}

TEST(FormEscape, OfAnEmptySourceIsEmpty)
{
    EXPECT_EQ(escaped(""), "");
}

TEST(FormEscape, HasNoLimit)
{
    EXPECT_EQ(escaped(std::string(100000, ' ')), repeated("%20", 100000));
    EXPECT_EQ(escaped(std::string(100000, '.')), repeated("%2e", 100000));
    EXPECT_EQ(escaped(std::string(100000, 'a')), std::string(100000, 'a'));
}

TEST(FormEscapeBounded, OfALimitBelowOneOrAnEmptySourceIsEmpty)
{
    const std::string empty("\0~~~", 4);
    for (const int limit : {0, -1, -1000, -2147483647 - 1}) {
        EXPECT_EQ(bounded_area("abc", limit, 4), empty);
        EXPECT_EQ(bounded_area(" ", limit, 4), empty);
        EXPECT_EQ(bounded_area("", limit, 4), empty);
    }
    for (const int limit : {1, 2, 3, 4096}) {
        EXPECT_EQ(bounded_area("", limit, 4), empty);
    }
}

TEST(FormEscapeBounded, StopsAtItsLimit)
{
    const struct {
        const char *source;
        int limit;
        const char *text;
    } cases[] = {
        {"abc", 1, "a"},     {"abc", 2, "ab"},     {"abc", 3, "abc"},    {"abc", 4, "abc"},
        {".bc", 3, "%2e"},   {".bc", 4, "%2eb"},   {"a.c", 4, "a%2e"},   {"   ", 5, "%20%20%20"},
        {" bc", 3, "%20bc"}, {" bcd", 3, "%20bc"}, {" ..", 4, "%20%2e"}, {"..", 6, "%2e%2e"},
    };
    for (const auto &row : cases) {
        EXPECT_STREQ(bounded_area(row.source, row.limit, promised_room(row.limit)).c_str(),
                     row.text);
    }
}

// Deliberate: the byte behind the last one written stays, whatever the destination held there.
TEST(FormEscapeBounded, KeepsAByteOfTheDestinationWhereAnEscapeIsRefused)
{
    const struct {
        const char *source;
        int limit;
        const char *text;
    } cases[] = {
        {" ", 1, "~"},         {".", 2, "~"},       {"a.", 2, "a~"},
        {"a.", 3, "a~"},       {"..", 5, "%2e~"},   {"  ", 3, "%20~"},
        {"   ", 4, "%20%20~"}, {" b.", 4, "%20b~"}, {"ab cd", 4, "ab~"},
    };
    for (const auto &row : cases) {
        EXPECT_STREQ(bounded_area(row.source, row.limit, promised_room(row.limit)).c_str(),
                     row.text);
    }
}

TEST(FormEscapeBounded, WritesWhatAPlainModelWritesAndNothingElse)
{
    std::mt19937 random(1021);
    for (int limit = -1; limit <= 4096; ++limit) {
        const std::size_t room = promised_room(limit);
        const std::size_t size = static_cast<std::size_t>(limit) + 5;
        const auto mostly = random() % 4;
        std::string mixed(size, 'a');
        for (char &byte : mixed) {
            const auto kind = random() % 16 == 0 ? random() % 3 : mostly;
            byte = kind == 0 ? ' ' : kind == 1 ? static_cast<char>(128 + random() % 128) : 'z';
        }
        for (const std::string &source :
             {std::string(size, ' '), std::string(size, '.'), std::string(size, 'a'), mixed,
              mixed.substr(0, size / 2)}) {
            ASSERT_EQ(bounded_area(source, limit, room),
                      escaped_area(std::string(room, '~'), source, limit, limit - 3))
                << "limit " << limit << ", source " << testing::PrintToString(source);
        }
    }
}
