/// \file
/// Collapsing runs of white space.
#pragma once

#pragma GCC visibility push(default)

/// Drops leading spaces and collapses each run of spaces to one.
///
/// A single trailing space remains. Other white space is copied unchanged.
///
/// \param source the string
/// \param destination receives the result; may be \p source
/// \return \p destination.
char *collapse_spaces(const char *source, char *destination);

/// Drops leading white space and collapses each run to one space, or two after a ".", in place.
///
/// A single trailing space remains. Every white-space character becomes a space.
///
/// \param text the string
/// \return \p text.
char *normalize_spaces_in_place(char *text);

#pragma GCC visibility pop
