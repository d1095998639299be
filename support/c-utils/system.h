/// \file
/// What machine and what process this is.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Writes "Mac OS X" with its NUL, 9 bytes, deliberately on every platform.
void get_os_name(char *buffer);

/// Writes the version of Mac OS X, such as "10.4.11", cut to \p size bytes with the NUL; "unknown"
/// where there is none to be had. A \p size of 0 writes nothing. \return \p buffer.
char *get_os_version(char *buffer, std::size_t size);

/// Writes the host name, cut to \p size bytes with the NUL; an empty text when the system does not
/// tell it. Whether a name that does not fit is cut or left out is the system's choice (POSIX
/// leaves it open). A \p size of 0 writes nothing.
void get_host_name(char *buffer, std::size_t size);

/// Reads the command line of a process, 0 for this one, from /proc/N/cmdline where the system has
/// it; a negative number finds none. The arguments keep the NUL bytes between them, so that the
/// buffer read as a text shows the first; at most \p size - 1 bytes are read and a NUL is put
/// behind them. A reading that fails ends them, deliberately: what came before is kept. A \p size
/// of 0 reads and writes nothing.
/// \return \p buffer, or null when nothing was read or the first argument is empty.
char *get_process_command_line(char *buffer, std::size_t size, long process_id);

#pragma GCC visibility pop
