// Input: a line with a location and a size, then three texts, each up to a NUL: a source, a pattern
// and a replacement.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "fuzz/captured_stream.h"
#include "fuzz/check.h"
#include "fuzz/input.h"
#include "support/c-utils.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

char *lower(const char *source, char *destination)
{
    string_to_lower(source, destination);
    return destination;
}

std::string all_encoded(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        result += plainly_encoded(c);
    }
    return result;
}

struct Transform {
    const char *name;
    char *(*function)(const char *, char *);
    std::string (*model)(const std::string &);
    bool grows = false; ///< so that it cannot be done in place
};

const Transform transforms[] = {
    {"string_to_lower", lower, plainly_lowered},
    {"string_to_upper", string_to_upper, plainly_raised},
    {"remove_blanks_and_underscores", remove_blanks_and_underscores,
     [](const std::string &text) { return without(text, " _"); }},
    {"remove_periods", remove_periods, [](const std::string &text) { return without(text, "."); }},
    {"remove_spaces", remove_spaces, [](const std::string &text) { return without(text, " "); }},
    {"line_breaks_to_spaces", line_breaks_to_spaces,
     [](const std::string &text) { return replaced(text, "\n\r", "  "); }},
    {"collapse_spaces", collapse_spaces, plainly_collapsed},
    {"underscores_to_spaces", underscores_to_spaces,
     [](const std::string &text) { return replaced(text, "_", " "); }},
    {"spaces_to_underscores", spaces_to_underscores,
     [](const std::string &text) { return replaced(text, " ", "_"); }},
    {"keep_identifier_characters", keep_identifier_characters, identifier_part},
    {"underscores_to_camel_case", underscores_to_camel_case, plainly_camel_cased},
    {"last_word_of_name", last_word_of_name, plain_last_word},
    {"first_word_of_name", first_word_of_name, plain_first_word},
    {"double_percent_signs", double_percent_signs, plainly_doubled, true},
    {"url_encode", url_encode, all_encoded, true},
};

void check_transform(const Transform &transform, const std::string &text)
{
    const std::string expected = transform.model(text);
    const ExactBuffer source(text);
    const ExactBuffer destination(expected.size() + 1);
    const char *const result = transform.function(source.data(), destination.data());
    expect(result == destination.data(), "the destination is returned");
    expect_equal(destination.text(), expected, transform.name);
    expect(destination.intact(), "nothing is written around the destination");
    expect_equal(source.text(), text, "the source afterwards");
    if (!transform.grows) {
        transform.function(source.data(), source.data());
        expect_equal(source.text(), expected, std::string(transform.name) + ", in place");
    }
}

void check_counted_copy(const std::string &text)
{
    const std::string content = text.substr(0, 255);
    const std::string counted = static_cast<char>(content.size()) + content;
    const ExactBuffer area(counted.size() + 1);
    std::memcpy(area.data(), counted.data(), counted.size());
    auto *const bytes = reinterpret_cast<unsigned char *>(area.data());
    // The areas overlap: the copy stands one byte behind.
    expect(copy_counted_string(bytes + 1, bytes) == bytes + 1, "the destination is returned");
    expect_equal(area.bytes(), counted.substr(0, 1) + counted, "copy_counted_string");
    expect(area.intact(), "nothing is written around the area");
}

void check_bounded_copy(const std::string &text, int wanted_size)
{
    const auto size = static_cast<std::size_t>(std::clamp(wanted_size, 0, 10000));
    const ExactBuffer source(text);
    const ExactBuffer destination(size);
    copy_string_bounded(destination.data(), source.data(), size);
    std::string expected = text.substr(0, size == 0 ? 0 : size - 1);
    expected.resize(size, '\0');
    expect_equal(destination.bytes(), expected, "copy_string_bounded");
    copy_string_bounded(destination.data(), nullptr, size);
    expect_equal(destination.bytes(), std::string(size, '\0'), "copy_string_bounded of null");
    expect(destination.intact(), "nothing is written around the destination");
}

void check_insertion(const std::string &text, const std::string &target, int location)
{
    const ExactBuffer area(target, text.size());
    std::string printed;
    {
        const CapturedStream captured(stdout);
        insert_string_into_string(ExactBuffer(text).data(), area.data(), location);
        printed = captured.text();
    }
    const bool inside = location >= 0 && static_cast<std::size_t>(location) <= target.size();
    std::string expected = target;
    std::string trace = "insert_string_into_string: ";
    if (inside) {
        expected.insert(static_cast<std::size_t>(location), text);
        trace += expected + " \n";
    } else {
        trace += "bad location " + std::to_string(location) + ", into_string length " +
                 std::to_string(target.size()) + " \n";
    }
    expect_equal(area.text(), expected, "insert_string_into_string");
    expect_equal(printed, trace, "what insert_string_into_string prints");
    expect(area.intact(), "nothing is written around the target");
}

void check_replacement(const std::string &pattern, const std::string &replacement,
                       const std::string &source)
{
    const Replaced expected =
        pattern.empty() ? Replaced{source, 0} : plain_replacement(pattern, replacement, source);
    const ExactBuffer pattern_text(pattern);
    const ExactBuffer replacement_text(replacement);
    const ExactBuffer text(source);
    const ExactBuffer destination(expected.text.size() + 1);
    const char *rest = replace_all_substrings(pattern_text.data(), replacement_text.data(),
                                              text.data(), destination.data());
    expect_equal(destination.text(), expected.text, "replace_all_substrings");
    expect_equal(rest - destination.data(), static_cast<long long>(expected.rest), "its result");
    expect(destination.intact(), "nothing is written around the destination");
    if (replacement.size() <= pattern.size()) {
        replace_all_substrings(pattern_text.data(), replacement_text.data(), text.data(),
                               text.data());
        expect_equal(text.text(), expected.text, "replace_all_substrings, in place");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    const int location = Input::number(numbers);
    const int bound = Input::number(numbers);
    const std::string source = input.text();
    const std::string pattern = input.text();
    const std::string replacement = input.text();

    for (const Transform &transform : transforms) {
        check_transform(transform, source);
    }
    check_counted_copy(source);
    check_bounded_copy(source, bound);
    check_insertion(replacement, source, location);
    check_replacement(pattern, replacement, source);
    return 0;
}
