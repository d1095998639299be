/// \file
/// Breaking text into lines.
#pragma once

#pragma GCC visibility push(default)

/// Breaks text into lines in place.
///
/// A line break replaces a white-space character, and the white space after it, by a line feed and
/// \p indent spaces. The line feed and the indentation count towards the width of the line that
/// they start. A word longer than a line is not split. The call ends for every width, indent and
/// column, including negative ones and the least and greatest integers.
///
/// \param text the text; needs room for the added indentation, \p indent bytes for each break
/// \param width the greatest length of a line, including its line feed
/// \param indent spaces at the start of every line but the first; a negative number counts as 0
/// \param first_column characters that precede the text on its first line. If it is above 0 and the
///     first line has no place to break, the text starts on a new line and its first character is
///     overwritten: pass a text that begins with a blank.
void wrap_text_in_place(char *text, int width, int indent, int first_column);

#pragma GCC visibility pop
