/// \file
/// The names of the system and the machine, and the command lines of processes.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Writes the name "Mac OS X". On purpose: the same on every platform.
/// \param buffer receives 9 bytes, including the NUL
void get_os_name(char *buffer);

/// Writes the version of Mac OS X, such as "10.4.11", or "unknown" if it cannot be read.
/// \param buffer receives the version
/// \param size the size of \p buffer in bytes, to which the version is truncated; 0 writes nothing
/// \return \p buffer.
char *get_os_version(char *buffer, std::size_t size);

/// Writes the host name, or "" if the system does not report it.
/// \param buffer receives the name
/// \param size the size of \p buffer in bytes; 0 writes nothing. The system chooses whether a
///     longer name is truncated or left out (POSIX allows both).
void get_host_name(char *buffer, std::size_t size);

/// Reads the command line of a process from /proc/N/cmdline, where available.
///
/// The arguments remain separated by NUL bytes, so that the buffer, read as a string, is the first
/// argument. On purpose: after a read error, the bytes read so far are kept.
///
/// \param buffer receives the arguments and a further NUL
/// \param size the size of \p buffer in bytes: at most \p size - 1 bytes are read; 0 reads and
///     writes nothing
/// \param process_id the process, 0 for this one; a negative number finds none
/// \return \p buffer, or null if nothing was read or the first argument is empty.
char *get_process_command_line(char *buffer, std::size_t size, long process_id);

#pragma GCC visibility pop
