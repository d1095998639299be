/// \file
/// Words of a text and words of a name. The character classes are the standard library's, in the
/// locale in force.
#pragma once

#pragma GCC visibility push(default)

/// Copies \p source from its last word on. From the second character on, an upper-case letter
/// starts a word and a "_" or space starts one behind itself; a text without either is copied
/// whole, and one that ends in "_" or a space gives "". Source and destination may be the same
/// text. \return \p destination.
char *last_word_of_name(const char *source, char *destination);

/// Copies \p source up to, not including, the first "_", space or upper-case letter at or after its
/// second character; the whole of it when there is none. Source and destination may be the same
/// text. \return \p destination.
char *first_word_of_name(const char *source, char *destination);

/// \return the number of bytes before the first white-space character or the end.
int leading_non_space_length(const char *text);

/// Compares \p first up to its first white space or end with \p second.
/// \return -1 when \p second ends or reaches white space sooner; the difference of the first
/// differing bytes, \p second minus \p first, taken unsigned; at the end of \p first, 1 when
/// \p second goes on with a non-space character and 0 when it does not.
int compare_first_words(const char *first, const char *second);

/// Copies word \p n of \p source, counted from 0, to \p destination. Words stand between runs of
/// space, tab, line feed and backslash. A negative \p n counts as 0. Only the first 2047 bytes of
/// the source are looked at; a longer one is cut there, a word too. The destination needs the
/// word's length and a NUL, at most 2048 bytes; it may be the source. Uses the standard library's
/// tokenizer (strtok) and its state.
/// \return the word's byte offset in \p source; -1, with an empty destination, when there is no
/// such word.
int nth_word(const char *source, int n, char *destination);

#pragma GCC visibility pop
