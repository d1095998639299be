// Input: a line with a day number, then a text: a decimal number, a date or a month's name.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "fuzz/check.h"
#include "fuzz/date_model.h"
#include "fuzz/input.h"
#include "support/c-utils.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/parse_float_model.h"

namespace {

constexpr std::uint32_t untouched = 0x12345678;
constexpr std::size_t date_size = 24;

void check_float(const std::string &text)
{
    const ExactBuffer source(text);
    float result;
    std::memcpy(&result, &untouched, sizeof result);
    const int returned = parse_float(source.data(), &result);
    std::uint32_t pattern;
    std::memcpy(&pattern, &result, sizeof pattern);

    const std::optional<std::uint32_t> expected = PlainReader().read(text);
    expect_equal(returned, expected ? 1 : 0, "parse_float of " + quoted(text));
    if (!expected || !is_not_a_number(*expected)) {
        expect_equal(pattern, expected.value_or(untouched), "the bits of " + quoted(text));
    }
}

void check_date(const std::string &text)
{
    const ExactBuffer source(text);
    std::int32_t day_number = untouched;
    const int consumed = parse_date(source.data(), &day_number);
    const std::optional<PlainReading> expected = PlainDateReader(text).read();
    expect_equal(consumed, expected ? expected->consumed : -1, "parse_date of " + quoted(text));
    if (!expected) {
        expect_equal(day_number, untouched, "the day number is left alone");
    } else if (expected->date.year >= 1) { // before, the formula is no calendar
        const long long number = plain_day_number(expected->date);
        expect_equal(static_cast<std::uint32_t>(day_number), static_cast<std::uint32_t>(number),
                     "the day number of " + quoted(text));
    }
    expect_equal(source.text(), text, "the text afterwards");
}

void check_month(const std::string &text)
{
    const ExactBuffer name(text);
    const int month = month_from_name(name.data());
    std::string expected = text;
    for (std::size_t i = 0; i < std::min<std::size_t>(text.size(), 3); ++i) {
        expected[i] = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] | 32) : text[i];
    }
    expect_equal(month, plain_month(expected.substr(0, 3)), "month_from_name");
    expect_equal(name.text(), expected, "the name afterwards");
    expect(name.intact(), "nothing is written around the name");
}

/// At least two digits, behind the sign if there is one.
std::string two_digits(long long number)
{
    const std::string text = std::to_string(number < 0 ? -number : number);
    return (number < 0 ? "-" : "") + std::string(text.size() < 2 ? "0" : "") + text;
}

void check_date_texts(std::int32_t day_number)
{
    const ExactBuffer long_text(date_size);
    const ExactBuffer compact_text(date_size);
    format_date_long(day_number, long_text.data());
    format_date_compact(day_number, compact_text.data());
    expect(long_text.text().size() < date_size, "the long form ends within its room");
    expect(compact_text.text().size() < date_size, "the compact form ends within its room");
    expect(long_text.intact() && compact_text.intact(), "both buffers hold");
    if (day_number < first_day_of_year_1) {
        return;
    }
    const PlainDate date = plain_date(day_number);
    const std::string day = std::to_string(date.day);
    const std::string month = month_text(date.month);
    const long long shown = date.year < 2100 ? date.year - 2000 : date.year;
    expect_equal(long_text.text(), day + "-" + month + "-" + two_digits(date.year), "long form");
    expect_equal(compact_text.text(), day + month + two_digits(shown), "compact form");
    if (date.year >= 2000) {
        std::int32_t read = 0;
        parse_date(compact_text.data(), &read);
        expect_equal(read, day_number, "the compact form read back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    const std::int32_t day_number = Input::number(numbers);
    const std::string text = input.text();

    check_float(text);
    check_month(text);
    for (std::size_t length = 0; length < std::min<std::size_t>(text.size(), 30); ++length) {
        check_date(text.substr(0, length));
    }
    check_date(text);
    check_date_texts(day_number);
    return 0;
}
