/// \file
/// Breaking a text into lines.
#pragma once

#pragma GCC visibility push(default)

/// Breaks \p text into lines in place. A line break is a white-space character, replaced together
/// with the white space behind it by a line feed and \p indent spaces; the line feed counts towards
/// the width of the line that it starts, as the indentation does.
///
/// \param text the text; must have room for the indentation that is added: \p indent bytes a break
/// \param width the greatest length of a line, its line feed counted
/// \param indent spaces at the start of every line but the first; negative counts as 0
/// \param first_column characters that already stand before the text on its first line. When it is
///     above 0 and the first line has no place to break, the text starts on a fresh line and its
///     first character is overwritten: pass a text that begins with a blank.
///
/// A word longer than a line stays whole. The call ends for every width, indent and column,
/// negative ones and the ends of the integers among them.
void wrap_text_in_place(char *text, int width, int indent, int first_column);

#pragma GCC visibility pop
