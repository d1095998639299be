/// \file
/// Words of a string and words of a name. The character classes are the standard library's, in the
/// current locale.
#pragma once

#pragma GCC visibility push(default)

/// Copies the last word of a name such as "lastWord" or "last_word".
///
/// From the second character on, an upper-case letter starts a word, and so does the character
/// after a "_" or space. A name without either is copied whole; a name that ends in "_" or a space
/// gives "".
///
/// \param source the name
/// \param destination receives the word; may be \p source
/// \return \p destination.
char *last_word_of_name(const char *source, char *destination);

/// Copies the first word of a name such as "firstWord" or "first_word".
///
/// The word ends in front of the first "_", space or upper-case letter from the second character
/// on. A name without any of them is copied whole.
///
/// \param source the name
/// \param destination receives the word; may be \p source
/// \return \p destination.
char *first_word_of_name(const char *source, char *destination);

/// Returns the length of the first word of a string.
/// \param text the string
/// \return the number of bytes in front of the first white-space character or the NUL.
int leading_non_space_length(const char *text);

/// Compares the first words of two strings.
/// \param first compared up to its first white space or end
/// \param second the other string
/// \return -1 if \p second ends or reaches white space first; the difference of the first different
/// bytes, \p second minus \p first, as unsigned bytes; at the end of \p first, 1 if \p second
/// continues with a non-space character, otherwise 0.
int compare_first_words(const char *first, const char *second);

/// Copies a word of a string. Words are separated by spaces, tabs, line feeds and backslashes.
///
/// Uses the standard library's tokenizer (strtok) and its state.
///
/// \param source the string. Only its first 2047 bytes are read; a word that continues after them
///     is truncated there.
/// \param n the index of the word, from 0; a negative number counts as 0
/// \param destination receives the word, or "" if there is none; may be \p source. Needs the word's
///     length and a NUL, at most 2048 bytes.
/// \return the word's byte offset in \p source; -1 if there is no such word.
int nth_word(const char *source, int n, char *destination);

#pragma GCC visibility pop
