/// \file
/// Numbered, labelled messages to the user.
///
/// | level | label | bell |
/// |---|---|---|
/// | 0 | "Log" | none |
/// | 1 | none | none |
/// | 2, 3 | "Info", "Note" | none |
/// | 4, 5 | "Info", "Note" | after the text |
/// | 6 | none | in front of the text |
/// | 7 to 10 | "Alert", "Warning", "Error", "Fatal Error" | after the text |
///
/// Any other level counts as 8. Nothing here allocates or fails: long messages are truncated, and
/// write errors are ignored.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Reports a printf-style message to the user and the time-stamp recorder.
///
/// The expanded message is truncated to 1023 characters. The line "label: text\n", truncated to
/// 1023 characters too, is passed to print_indented() and record_timestamped_line(). At levels 1
/// to 10 the message hook then receives the level (8 for an unknown one) and the expanded message.
/// With the default message hook, level 10 ends the process with exit status 1.
///
/// On purpose: with the default hooks the user sees each message twice, because the hook formats
/// its own line. A message that ends in a newline is followed by an empty line, and at levels 1 and
/// 6 the line begins with ": ".
///
/// \param level 0 to 10; see the table above
/// \param format a printf format, followed by its arguments
/// \return the message hook's result; at level 0, the length of the recorded line.
[[gnu::format(printf, 2, 3)]] int report_message(int level, const char *format, ...);

/// Formats the line that the built-in message hooks print for a message, without a newline.
///
/// Trailing line feeds of \p text are dropped, and at most \p buffer_size - 20 characters of it are
/// kept, so that label and bell always fit. A buffer of 20 bytes or fewer holds none of the text,
/// and the rest of the line is truncated to fit.
///
/// \param level 0 to 10; see the table above
/// \param text the message
/// \param buffer receives the line and its NUL; may be null if \p buffer_size is below 1
/// \param buffer_size the size of \p buffer in bytes; nothing is written if it is below 1
/// \return the number of characters stored, not counting the NUL.
int format_message_line(int level, const char *text, char *buffer, int buffer_size);

/// Passes a string to the time-stamp recorder and to the output hook. An empty string does nothing.
/// \param text passed unchanged and in full
/// \param tag passed to the output hook only; may be null if the installed hook allows it
void write_raw_message(const char *text, const char *tag);

/// Counts the calls of report_message() that have returned.
/// \return the count, which wraps from the greatest 32-bit integer to the least.
std::int32_t message_count();

#pragma GCC visibility pop
