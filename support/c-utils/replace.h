/// \file
/// Search and replace.
#pragma once

#pragma GCC visibility push(default)

/// Copies a string and replaces each occurrence of a pattern.
///
/// The search continues after an occurrence; replacements are not searched again.
///
/// \param pattern the string to search for; "" never occurs
/// \param replacement the string to write instead
/// \param source the string to copy
/// \param destination receives the copy. May be \p source if the replacement is not longer than the
///     pattern. Needs the length of \p source, the difference of the two lengths for each
///     occurrence, and a NUL.
/// \return the place in \p destination of the rest after the last occurrence. On purpose: not
/// \p destination itself.
char *replace_all_substrings(const char *pattern, const char *replacement, const char *source,
                             char *destination);

#pragma GCC visibility pop
