/// \file
/// Where the program's results go.
#pragma once

#include <string>
#include <string_view>

/// Says one line of a result: on standard output, or in an automated run framed with \p tag. A
/// newline is put behind it.
void say_result(const char *tag, const std::string &text);

/// Whether a line of say_result() did not arrive; that was reported then.
bool results_were_lost();

/// Has say_result() frame its lines, and messages with them.
void frame_output();

/// Writes bytes to standard output as they are.
/// \return whether all arrived; if not, it is reported.
bool write_standard_output(std::string_view bytes);
