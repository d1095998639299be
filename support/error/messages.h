/// \file
/// Numbered, labelled messages to the user.
///
/// | level | label | bell |
/// |---|---|---|
/// | 0 | "Log" | none |
/// | 1 | none | none |
/// | 2, 3 | "Info", "Note" | none |
/// | 4, 5 | "Info", "Note" | after the text |
/// | 6 | none | before the text |
/// | 7 to 10 | "Alert", "Warning", "Error", "Fatal Error" | after the text |
///
/// Any other level counts as 8. Nothing here allocates; nothing here fails: a text that is too
/// long is cut, and the results of writing are not looked at.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Reports a printf-style message at \p level.
///
/// The expanded text, cut at 1023 characters, is composed into the line "label: text\n" (cut at
/// 1023 characters too), which goes through print_indented() and record_timestamped_line(). At
/// levels 1 to 10 the message hook then gets the level, the 8 of an unknown one, and the text
/// itself. With the default hooks the user thus sees each message twice, which is deliberate; so
/// are the empty line behind a text that brings its own newline, and the line that begins with ": "
/// at levels 1 and 6.
///
/// At level 10 the default message hook ends the process with exit status 1.
///
/// \return the message hook's result; at level 0, the length of the recorded line.
[[gnu::format(printf, 2, 3)]] int report_message(int level, const char *format, ...);

/// Composes the line that the ready-made hooks print for a message, without a newline behind it.
///
/// Trailing line feeds of \p text are dropped and at most \p buffer_size - 20 characters of it are
/// kept, so that label and bell always fit. A buffer of 20 bytes or fewer holds nothing of the
/// text: the rest of the line is cut to the buffer. The result is NUL-terminated in every case
/// but one: a \p buffer_size below 1 writes nothing, and \p buffer may then be null.
///
/// \return the number of characters stored, not counting the NUL.
int format_message_line(int level, const char *text, char *buffer, int buffer_size);

/// Hands a finished text and a tag to the time-stamp recorder (the text only) and to the output
/// hook, whole. An empty text does nothing at all. \p tag may be null where the output hook in
/// force allows it.
void write_raw_message(const char *text, const char *tag);

/// \return how many calls of report_message() have come back so far. Wraps to the least 32-bit
/// integer after the greatest.
std::int32_t message_count();

#pragma GCC visibility pop
