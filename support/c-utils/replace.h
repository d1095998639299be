/// \file
/// Search and replace.
#pragma once

#pragma GCC visibility push(default)

/// Copies \p source to \p destination with each occurrence of \p pattern replaced. The search goes
/// on behind an occurrence; replacements are not searched again. The copies are overlap-safe:
/// \p destination may be \p source when the replacement is not longer than the pattern. An empty
/// pattern occurs nowhere. The destination needs the source's length, the difference of the two
/// lengths for each occurrence, and a NUL.
///
/// \return deliberately not the destination but the place in it where the rest behind the last
/// occurrence was written.
char *replace_all_substrings(const char *pattern, const char *replacement, const char *source,
                             char *destination);

#pragma GCC visibility pop
