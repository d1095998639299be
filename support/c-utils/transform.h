/// \file
/// Copies that change, drop or double single characters.
///
/// The character classes are the standard library's, in the locale in force, asked about unsigned
/// bytes: in the locale "C" no byte of 0x80 or above is a letter. Source and destination may be the
/// same text, except for double_percent_signs(). A result needs no more room than its source,
/// except where it is said.
#pragma once

#pragma GCC visibility push(default)

/// Lower-cases every byte.
void string_to_lower(const char *source, char *destination);

/// Upper-cases every byte. \return \p destination.
char *string_to_upper(const char *source, char *destination);

/// Drops every " " and "_". \return \p destination.
char *remove_blanks_and_underscores(const char *source, char *destination);

/// Drops every ".". \return \p destination.
char *remove_periods(const char *source, char *destination);

/// Drops every " ". \return \p destination.
char *remove_spaces(const char *source, char *destination);

/// Turns each line feed and each carriage return into a space. \return \p destination.
char *line_breaks_to_spaces(const char *source, char *destination);

/// Turns each "_" into a space. \return \p destination.
char *underscores_to_spaces(const char *source, char *destination);

/// Turns each space into "_". \return \p destination.
char *spaces_to_underscores(const char *source, char *destination);

/// Keeps only letters, digits and "_". \return \p destination.
char *keep_identifier_characters(const char *source, char *destination);

/// Writes each "%" twice, so that the result is a printf format without conversions. Needs up to
/// twice the source's length and a NUL. \return \p destination.
char *double_percent_signs(const char *source, char *destination);

/// Removes every run of "_" and upper-cases the first character of the text and the one behind each
/// run; all others stay as they are. \return \p destination.
char *underscores_to_camel_case(const char *source, char *destination);

#pragma GCC visibility pop
