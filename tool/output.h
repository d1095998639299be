/// \file
/// Where the program's results go.
#pragma once

#include <string_view>

/// Says one line of a result: on standard output, or in an automated run framed with \p tag. A
/// newline is put behind it.
void say_result(const char *tag, const char *text);

/// Has say_result() frame its lines, and messages with them.
void frame_output();

/// Writes bytes to standard output as they are.
/// \return whether all arrived; if not, it is reported.
bool write_standard_output(std::string_view bytes);

/// Writes bytes to a file. It appears under its name only when all have arrived: until then they
/// are in a file with ".part" behind the name. A device or pipe is written to directly.
/// \return whether it worked; if not, it is reported and nothing half-written is left.
bool write_output_file(const char *path, std::string_view bytes);
