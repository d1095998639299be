// Input: a line with the number of a word, then two texts, each up to a NUL.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/check.h"
#include "fuzz/input.h"
#include "support/c-utils.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/text_models.h"

namespace {

constexpr std::size_t source_limit = 2047; // of nth_word

void check_nth_word(const std::string &text, int n, const std::vector<PlacedWord> &words)
{
    const auto index = static_cast<std::size_t>(std::max(n, 0));
    const PlacedWord expected = index < words.size() ? words[index] : PlacedWord{-1, ""};
    const ExactBuffer source(text);
    const ExactBuffer destination(expected.word.size() + 1);
    const std::string what = "nth_word " + std::to_string(n);
    expect_equal(nth_word(source.data(), n, destination.data()), expected.offset, what);
    expect_equal(destination.text(), expected.word, what);
    expect(destination.intact(), "nothing is written around the destination");
    expect_equal(source.text(), text, "the source afterwards");
}

void check_every_word(const std::string &text, int n)
{
    const std::vector<PlacedWord> words = plainly_split(text.substr(0, source_limit));
    check_nth_word(text, n, words);
    const int count = static_cast<int>(std::min<std::size_t>(words.size(), 20));
    for (int i = 0; i <= count; ++i) {
        check_nth_word(text, i, words);
    }
}

void check_name_words(const std::string &name)
{
    const ExactBuffer source(name);
    const std::string first = plain_first_word(name);
    const std::string last = plain_last_word(name);
    const ExactBuffer first_destination(first.size() + 1);
    const ExactBuffer last_destination(last.size() + 1);
    first_word_of_name(source.data(), first_destination.data());
    last_word_of_name(source.data(), last_destination.data());
    expect_equal(first_destination.text(), first, "first_word_of_name");
    expect_equal(last_destination.text(), last, "last_word_of_name");
    expect(first_destination.intact() && last_destination.intact(), "both destinations hold");
}

void check_spaces(const std::string &text)
{
    const ExactBuffer buffer(text);
    expect_equal(leading_non_space_length(buffer.data()),
                 static_cast<long long>(first_word(text).size()), "leading_non_space_length");
    expect(normalize_spaces_in_place(buffer.data()) == buffer.data(), "the text is returned");
    const std::string once = buffer.text();
    expect_equal(once, plainly_normalized(text), "normalize_spaces_in_place");
    normalize_spaces_in_place(buffer.data());
    expect_equal(buffer.text(), once, "normalize_spaces_in_place, done again");
    expect(buffer.intact(), "nothing is written around the text");
}

void check_comparison(const std::string &first, const std::string &second)
{
    const ExactBuffer a(first);
    const ExactBuffer b(second);
    expect_equal(compare_first_words(a.data(), b.data()), plainly_compared(a.text(), b.text()),
                 "compare_first_words");
    expect_equal(compare_first_words(b.data(), a.data()), plainly_compared(b.text(), a.text()),
                 "compare_first_words, the other way round");
    expect_equal(compare_first_words(a.data(), a.data()), 0, "compare_first_words with itself");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    const int n = Input::number(numbers);
    const std::string first = input.text();
    const std::string second = input.text();
    check_every_word(first, n);
    check_name_words(first);
    check_spaces(first);
    check_comparison(first, second);
    return 0;
}
