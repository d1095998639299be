/// \file
/// Copies that change, drop or double single characters.
///
/// The character classes are the standard library's, in the current locale, applied to unsigned
/// bytes: in the locale "C" no byte of 0x80 or above is a letter. Except where documented
/// otherwise, the destination needs as much room as the source.
#pragma once

#pragma GCC visibility push(default)

/// Lower-cases every byte.
/// \param source the string
/// \param destination receives the result; may be \p source
void string_to_lower(const char *source, char *destination);

/// Upper-cases every byte.
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *string_to_upper(const char *source, char *destination);

/// Drops every " " and "_".
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *remove_blanks_and_underscores(const char *source, char *destination);

/// Drops every ".".
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *remove_periods(const char *source, char *destination);

/// Drops every " ".
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *remove_spaces(const char *source, char *destination);

/// Replaces each line feed and each carriage return by a space.
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *line_breaks_to_spaces(const char *source, char *destination);

/// Replaces each "_" by a space.
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *underscores_to_spaces(const char *source, char *destination);

/// Replaces each space by "_".
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *spaces_to_underscores(const char *source, char *destination);

/// Keeps only letters, digits and "_".
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *keep_identifier_characters(const char *source, char *destination);

/// Doubles each "%", so that the result is a printf format without conversions.
/// \param source the string
/// \param destination receives the result; needs up to twice the length of \p source and a NUL, and
///     must not overlap \p source
/// \return \p destination.
char *double_percent_signs(const char *source, char *destination);

/// Drops every run of "_", and upper-cases the first character and each one after a run.
///
/// All other characters are copied unchanged.
///
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *underscores_to_camel_case(const char *source, char *destination);

#pragma GCC visibility pop
