// Input: a line with the limit of the bounded escape, how often each text is to be repeated, and a
// count of bytes; then texts, each up to a NUL: names and values by turns. All that stands behind
// the line is encoded in base64 as well.

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/check.h"
#include "fuzz/input.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/base64_model.h"
#include "tests/web/form_model.h"
#include "web/web.h"

namespace {

using Fields = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t longest_text = 2200; // twice what a form keeps of one

std::string repeated(const std::string &text, int times)
{
    std::string all;
    for (int i = 0; i < times && all.size() < longest_text && !text.empty(); ++i) {
        all += text;
    }
    return all.substr(0, longest_text);
}

void check_escape(const std::string &source)
{
    const std::size_t room = 3 * source.size() + 1;
    const std::string expected =
        escaped_area(std::string(room, '\0'), source, LLONG_MAX, LLONG_MAX).c_str();
    const ExactBuffer text(source);
    const ExactBuffer destination(expected.size() + 1);
    expect(form_escape(destination.data(), text.data()) == destination.data(),
           "the destination is returned");
    expect_equal(destination.text(), expected, "form_escape");
    expect(destination.intact(), "nothing is written around the destination");
}

void check_bounded_escape(const std::string &source, int limit)
{
    const std::size_t room = limit < 1 ? 1 : 3 * static_cast<std::size_t>(limit) + 2;
    const ExactBuffer text(source);
    const ExactBuffer destination(room);
    form_escape_bounded(destination.data(), text.data(), limit);
    expect_equal(destination.bytes(),
                 escaped_area(std::string(room, ExactBuffer::filling), source, limit, limit - 3LL),
                 "form_escape_bounded with limit " + std::to_string(limit));
    expect(destination.intact(), "nothing is written around the destination");
}

void check_body(const Fields &fields)
{
    std::vector<FormField> records;
    for (const auto &[name, value] : fields) {
        records.push_back({name.c_str(), value.c_str()});
    }
    std::string header = "old";
    std::string body = "old";
    build_form_body(static_cast<int>(records.size()), records.data(), header, body);
    expect_equal(body, plain_form_body(fields), "build_form_body");
    expect_equal(header,
                 "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                     std::to_string(body.size()),
                 "the header lines");
}

void check_base64(const std::string &bytes)
{
    const std::size_t length = (bytes.size() + 2) / 3 * 4;
    const ExactBuffer destination(length + 1);
    base64_encode(bytes.data(), static_cast<int>(bytes.size()), destination.data());
    const std::string text = destination.text();
    expect_equal(static_cast<long long>(text.size()), static_cast<long long>(length),
                 "the length of base64");
    expect(decoded(text) == bytes, "base64 can be read back");
    const std::size_t fill = (3 - bytes.size() % 3) % 3;
    expect(text.find_first_not_of(base64_alphabet) ==
               (fill == 0 ? std::string::npos : length - fill),
           "base64 has its fill characters at its end and nowhere else");
    expect(destination.intact(), "nothing is written around the destination");
}

void check_base64_length(int count)
{
    const long long length = (count + 2LL) / 3 * 4;
    expect_equal(base64_encoded_length(count), static_cast<std::int32_t>(length),
                 "base64_encoded_length of " + std::to_string(count));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    const int limit = Input::number(numbers);
    const int times = std::max(Input::number(numbers), 1);
    check_base64_length(Input::number(numbers));
    check_base64(input.rest());

    Fields fields;
    while (!input.empty() && fields.size() < 8) {
        const std::string name = repeated(input.text(), times);
        fields.emplace_back(name, repeated(input.text(), times));
        check_escape(name);
        check_bounded_escape(name, limit < -1 || limit > 4096 ? limit & 0xfff : limit);
    }
    check_body(fields);
    return 0;
}
