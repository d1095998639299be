// Each transform against its model for every text of up to six characters from a small alphabet.
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "support/c-utils.h"
#include "tests/support/c-utils/text_models.h"
#include "tests/support/c-utils/wrap_model.h"

namespace {

/// Calls \p check with every text of up to \p most of \p characters, and prints how many there are.
template <typename Check>
void for_every_text(const std::string &characters, std::size_t most, Check check)
{
    long count = 0;
    std::string text;
    const auto visit = [&](const auto &again) -> void {
        check(text);
        ++count;
        for (std::size_t i = 0; text.size() < most && i < characters.size(); ++i) {
            text += characters[i];
            again(again);
            text.pop_back();
        }
    };
    visit(visit);
    std::printf("%ld texts\n", count);
}

std::string transformed(char *(*transform)(const char *, char *), const std::string &text)
{
    char destination[64];
    return transform(text.c_str(), destination);
}

void check_transforms(const std::string &text)
{
    char lowered[64];
    string_to_lower(text.c_str(), lowered);
    ASSERT_EQ(lowered, plainly_lowered(text));
    ASSERT_EQ(transformed(string_to_upper, text), plainly_raised(text));
    ASSERT_EQ(transformed(remove_blanks_and_underscores, text), without(text, " _"));
    ASSERT_EQ(transformed(remove_periods, text), without(text, "."));
    ASSERT_EQ(transformed(remove_spaces, text), without(text, " "));
    ASSERT_EQ(transformed(line_breaks_to_spaces, text), replaced(text, "\n\r", "  "));
    ASSERT_EQ(transformed(collapse_spaces, text), plainly_collapsed(text));
    ASSERT_EQ(transformed(underscores_to_spaces, text), replaced(text, "_", " "));
    ASSERT_EQ(transformed(spaces_to_underscores, text), replaced(text, " ", "_"));
    ASSERT_EQ(transformed(double_percent_signs, text), plainly_doubled(text));
    ASSERT_EQ(transformed(underscores_to_camel_case, text), plainly_camel_cased(text));
    ASSERT_EQ(transformed(last_word_of_name, text), plain_last_word(text));
    ASSERT_EQ(transformed(first_word_of_name, text), plain_first_word(text));
    ASSERT_EQ(transformed(keep_identifier_characters, text), identifier_part(text));
    std::string encoded;
    for (const char c : text) {
        encoded += plainly_encoded(c);
    }
    ASSERT_EQ(transformed(url_encode, text), encoded);
    std::string in_place = text;
    ASSERT_EQ(normalize_spaces_in_place(in_place.data()), plainly_normalized(text));
}

void check_words(const std::string &text)
{
    ASSERT_EQ(leading_non_space_length(text.c_str()), static_cast<int>(first_word(text).size()));
    for (const char *const other : {"", "a", "aa", "a.", ".", " a", "aaaaaaa"}) {
        ASSERT_EQ(compare_first_words(text.c_str(), other), plainly_compared(text, other));
        ASSERT_EQ(compare_first_words(other, text.c_str()), plainly_compared(other, text));
    }
    const std::vector<PlacedWord> words = plainly_split(text);
    for (std::size_t n = 0; n <= words.size(); ++n) {
        char word[64];
        const int offset = nth_word(text.c_str(), static_cast<int>(n), word);
        ASSERT_EQ(offset, n < words.size() ? words[n].offset : -1) << n;
        ASSERT_EQ(word, n < words.size() ? words[n].word : "") << n;
    }
    for (const char *const pattern : {"a", "aa", ". ", "\n", "a.a"}) {
        char destination[128];
        const Replaced expected = plain_replacement(pattern, "<a>", text);
        char *const rest = replace_all_substrings(pattern, "<a>", text.c_str(), destination);
        ASSERT_EQ(destination, expected.text) << pattern;
        ASSERT_EQ(rest - destination, static_cast<std::ptrdiff_t>(expected.rest)) << pattern;
    }
}

void check_wrapping(const std::string &text)
{
    for (int width = 0; width <= 7; ++width) {
        for (int indent = 0; indent <= 3; ++indent) {
            for (int column = 0; column <= 4; ++column) {
                const Wrapped expected = plainly_wrapped(text, {width, indent, column});
                std::string wrapped = text;
                wrapped.resize(128);
                wrap_text_in_place(wrapped.data(), width, indent, column);
                ASSERT_EQ(wrapped.c_str(), expected.text)
                    << testing::PrintToString(text) << width << ' ' << indent << ' ' << column;
            }
        }
    }
}

const std::string white_characters = "a .\t\n";
const std::string name_characters = "aB_ %\xff\r";

} // namespace

TEST(EveryText, IsTransformedAsByTheModels)
{
    for_every_text(white_characters, 6, check_transforms);
    for_every_text(name_characters, 6, check_transforms);
}

TEST(EveryText, HasTheWordsOfTheModels)
{
    for_every_text(white_characters, 6, check_words);
}

TEST(EveryText, IsWrappedAsByTheModel)
{
    for_every_text(white_characters, 6, check_wrapping);
}
