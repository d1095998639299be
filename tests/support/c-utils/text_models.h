/// \file
/// What the functions on texts, names and words are to give, told as plainly as can be: whole
/// texts, one step after the other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

inline const std::string lower_letters = "abcdefghijklmnopqrstuvwxyz";
inline const std::string upper_letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
inline const std::string digits = "0123456789";
inline const std::string white_space = " \t\n\v\f\r";

inline std::string replaced(std::string text, const std::string &from, const std::string &to)
{
    for (char &c : text) {
        const std::size_t at = from.find(c);
        c = at == std::string::npos ? c : to[at];
    }
    return text;
}

inline std::string without(std::string text, const std::string &dropped)
{
    for (std::size_t at; (at = text.find_first_of(dropped)) != std::string::npos;) {
        text.erase(at, 1);
    }
    return text;
}

inline std::string plainly_lowered(const std::string &text)
{
    return replaced(text, upper_letters, lower_letters);
}

inline std::string plainly_raised(const std::string &text)
{
    return replaced(text, lower_letters, upper_letters);
}

inline std::string plainly_camel_cased(const std::string &text)
{
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c == '_') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    std::string result;
    for (const std::string &word : words) {
        result += plainly_raised(word.substr(0, 1));
        result += word.empty() ? "" : word.substr(1);
    }
    return result;
}

inline std::string plainly_doubled(const std::string &text)
{
    std::string result = text;
    for (std::size_t at = 0; (at = result.find('%', at)) != std::string::npos; at += 2) {
        result.insert(at, "%");
    }
    return result;
}

inline std::string identifier_part(const std::string &text)
{
    const std::string kept = lower_letters + upper_letters + digits + "_";
    std::string result = text;
    for (std::size_t at; (at = result.find_first_not_of(kept)) != std::string::npos;) {
        result.erase(at, 1);
    }
    return result;
}

/// By a search from the end.
inline std::string plain_last_word(const std::string &name)
{
    const std::size_t last = name.find_last_of("_ " + upper_letters);
    if (last == std::string::npos || last == 0) {
        return name;
    }
    const bool separator = name[last] == '_' || name[last] == ' ';
    return name.substr(last + (separator ? 1 : 0));
}

inline std::string plain_first_word(const std::string &name)
{
    return name.substr(0, name.find_first_of("_ " + upper_letters, 1));
}

/// A text as its words and the length of the run of blanks in front of each; the last run, which
/// may be empty, stands before an empty word.
struct Piece {
    std::size_t blanks;
    std::string word;
};

inline std::vector<Piece> pieces_of(std::string text, const std::string &blanks)
{
    std::vector<Piece> pieces;
    do {
        const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
        const std::size_t end = std::min(text.find_first_of(blanks, start), text.size());
        pieces.push_back({start, text.substr(start, end - start)});
        text.erase(0, end);
    } while (!pieces.back().word.empty());
    return pieces;
}

inline std::string plainly_collapsed(const std::string &text)
{
    std::string result;
    for (const Piece &piece : pieces_of(text, " ")) {
        const bool gap = piece.blanks > 0 && !result.empty();
        result += (gap ? " " : "") + piece.word;
    }
    return result;
}

inline std::string plainly_normalized(const std::string &text)
{
    std::string result;
    for (const Piece &piece : pieces_of(text, white_space)) {
        std::size_t gap = piece.blanks;
        if (result.empty()) {
            gap = 0;
        } else if (gap > 1) {
            gap = result.back() == '.' ? 2 : 1;
        }
        result += std::string(gap, ' ') + piece.word;
    }
    return result;
}

/// A byte as it stands in an encoded text.
inline std::string plainly_encoded(char c)
{
    if ((lower_letters + upper_letters + digits + "$-_.+!*(),").find(c) != std::string::npos) {
        return std::string(1, c);
    }
    char triple[4];
    std::snprintf(triple, sizeof triple, "%%%02X", static_cast<unsigned>(c) & 0xffU);
    return triple;
}

/// A whole result and the place in it of the rest behind the last occurrence.
struct Replaced {
    std::string text;
    std::size_t rest;
};

/// Cuts the source at the pattern from the left and joins the pieces.
inline Replaced plain_replacement(const std::string &pattern, const std::string &replacement,
                                  std::string source)
{
    std::string text;
    for (std::size_t at = source.find(pattern); at != std::string::npos;
         at = source.find(pattern)) {
        text += source.substr(0, at) + replacement;
        source = source.substr(at + pattern.size());
    }
    return {text + source, text.size()};
}

inline std::string first_word(const std::string &text)
{
    return text.substr(0, text.find_first_of(white_space));
}

inline int plainly_compared(const std::string &first, const std::string &second)
{
    const std::string a = first_word(first);
    const std::string b = first_word(second);
    if (b.compare(0, a.size(), a) == 0) {
        return b == a ? 0 : 1;
    }
    if (a.compare(0, b.size(), b) == 0) {
        return -1;
    }
    const auto differing = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<unsigned char>(*differing.second) -
           static_cast<unsigned char>(*differing.first);
}

/// A word and its place in the text that it is from.
struct PlacedWord {
    int offset;
    std::string word;
};

/// The words between runs of space, tab, line feed and backslash.
inline std::vector<PlacedWord> plainly_split(const std::string &text)
{
    std::vector<PlacedWord> words;
    std::size_t at = 0;
    for (const Piece &piece : pieces_of(text, " \t\n\\")) {
        at += piece.blanks;
        if (!piece.word.empty()) {
            words.push_back({static_cast<int>(at), piece.word});
        }
        at += piece.word.size();
    }
    return words;
}
