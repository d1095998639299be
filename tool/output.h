/// \file
/// Where the program's results go.
#pragma once

#include <string>
#include <string_view>

namespace corvella {

/// Says one line of a result: on standard output, or in an automated run framed with \p tag. A
/// newline is put behind it.
void print_result(const char *tag, const std::string &text);

/// Says a named text of a result. In an automated run each of its lines is one of print_result(),
/// the name before it, so that no text can look like the end of its frame.
void print_named_result(const char *tag, const char *name, const std::string &text);

/// Whether a line of print_result() did not arrive; that was reported then.
bool results_were_lost();

/// Has print_result() frame its lines, and messages with them.
void frame_output();

/// Writes bytes to standard output as they are.
/// \return whether all arrived; if not, it is reported.
bool write_standard_output(std::string_view bytes);

/// Writes what a server sent to standard output: as it is, but to a terminal as printable_text().
/// \return whether all arrived; if not, it is reported.
bool show_reply_text(std::string_view text);

/// Reports an error whose text is a server's, or holds a part that is: as printable_text() where
/// standard error is a terminal.
void report_error(const std::string &text);

} // namespace corvella
