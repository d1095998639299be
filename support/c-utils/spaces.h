/// \file
/// Shrinking runs of white space.
#pragma once

#pragma GCC visibility push(default)

/// Drops a space at the very start and each space that follows a space, so that leading spaces
/// vanish and runs become one; a single trailing space stays. Only the space character counts.
/// Source and destination may be the same text. \return \p destination.
char *collapse_spaces(const char *source, char *destination);

/// In place: each white-space character becomes a space, leading ones are dropped, and runs shrink
/// to one space, to two behind a ".". A single trailing space stays. \return \p text.
char *normalize_spaces_in_place(char *text);

#pragma GCC visibility pop
