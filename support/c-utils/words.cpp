#include "support/c-utils/words.h"

#include <cstddef>
#include <cstring>

#include "support/c-utils/characters.h"
#include "support/c-utils/copy.h"

namespace {

bool separates_names(char c)
{
    return c == '_' || c == ' ';
}

bool ends_word(char c)
{
    return c == '\0' || corvella::is_space(c);
}

} // namespace

char *last_word_of_name(const char *source, char *destination)
{
    const char *start = source;
    for (const char *c = source; *c != '\0'; ++c) {
        if (c == source) {
            continue; // the first character starts no word but the whole
        }
        if (corvella::is_upper(*c)) {
            start = c;
        } else if (separates_names(*c)) {
            start = c + 1;
        }
    }
    std::memmove(destination, start, std::strlen(start) + 1);
    return destination;
}

char *first_word_of_name(const char *source, char *destination)
{
    std::size_t length = source[0] == '\0' ? 0 : 1;
    while (source[length] != '\0' && !separates_names(source[length]) &&
           !corvella::is_upper(source[length])) {
        ++length;
    }
    std::memmove(destination, source, length);
    destination[length] = '\0';
    return destination;
}

int leading_non_space_length(const char *text)
{
    const char *end = text;
    while (!ends_word(*end)) {
        ++end;
    }
    return static_cast<int>(end - text);
}

int compare_first_words(const char *first, const char *second)
{
    for (; !ends_word(*first); ++first, ++second) {
        if (ends_word(*second)) {
            return -1;
        }
        if (*first != *second) {
            return static_cast<unsigned char>(*second) - static_cast<unsigned char>(*first);
        }
    }
    return ends_word(*second) ? 0 : 1;
}

int nth_word(const char *source, int n, char *destination)
{
    constexpr char delimiters[] = " \t\n\\";
    char words[2048];
    copy_string_bounded(words, source, sizeof words);
    const char *word = std::strtok(words, delimiters);
    for (; word != nullptr && n > 0; --n) {
        word = std::strtok(nullptr, delimiters);
    }
    if (word == nullptr) {
        destination[0] = '\0';
        return -1;
    }
    std::memcpy(destination, word, std::strlen(word) + 1);
    return static_cast<int>(word - words);
}
