/// \file
/// Opening, closing, testing, removing and enumerating files. Paths are NUL-terminated bytes in the
/// file system's encoding.
#pragma once

#include <cstdint>
#include <cstdio>

#pragma GCC visibility push(default)

/// What open_file() does when a file does not open; 0 does nothing.
enum {
    OPEN_FAIL_FATAL = 1,  ///< reports it and throws CorvellaAbortException
    OPEN_FAIL_REPORT = 2, ///< reports it at level 9
};

/// Streams opened by open_file() and not yet closed by close_file(). Nothing here reads it.
extern std::int32_t open_file_count;

/// 1 once open_file() has opened a file with a mode that begins with 'r'; 0 before. Nothing here
/// reads it.
extern std::int32_t file_opened_for_reading;

/// Receives the path of a regular file, in a buffer that is overwritten afterwards, and the user
/// value of the walk. The result is ignored.
using regular_file_callback = int (*)(const char *path, std::intptr_t user);

/// Opens a file as fopen (POSIX) does. A file opened with a mode that begins with 'w' or 'a' is
/// given the permissions rw-rw-rw-, deliberately whatever the file-creation mask and also when it
/// existed; that this failed is not told. A failure is reported with the reason that errno gives.
/// \param path the file's path
/// \param mode a mode of fopen
/// \param flags OPEN_FAIL_FATAL, OPEN_FAIL_REPORT, both or 0; other bits mean nothing
/// \return the stream, to be closed with close_file(); null when the file does not open.
/// \throws CorvellaAbortException with code 1, file "support/c-utils" and line 291 instead of
/// returning null for OPEN_FAIL_FATAL.
std::FILE *open_file(const char *path, const char *mode, int flags);

/// Opens \p path or else \p fallback, both as open_file() does: each failure is reported, and
/// deliberately OPEN_FAIL_FATAL gives up at the first.
/// \return the stream that opened, to be closed with close_file(); null when neither did.
/// \throws CorvellaAbortException as open_file() does.
std::FILE *open_file_with_fallback(const char *path, const char *fallback, const char *mode,
                                   int flags);

/// Closes a stream of open_file(); null does nothing. A failure is reported at level 9, with the
/// reason on standard error behind it; the stream is gone all the same, and no longer counted.
/// \return 0, or -1 when what was written may not have arrived.
int close_file(std::FILE *stream);

/// Whether there is anything at \p path, of any kind; links are followed. Null and "" have nothing,
/// and what cannot be asked about counts as nothing.
/// \return 1 or 0.
int file_exists(const char *path);

/// Removes a file, a link or an empty directory; links are not followed. Null and "" do nothing.
/// Only the directory bit of the mode decides between rmdir and unlink, deliberately: sockets and
/// block devices have it too, and are not removed.
/// \return 0, or -1 with errno as the system set it.
int remove_path(const char *path);

/// Calls \p callback for each regular file of a directory, links to files included, in the
/// system's order, without descending. The callback may remove the file, walk another directory or
/// throw, but not remove the directory. An entry whose path does not fit into 1024 bytes with its
/// NUL is reported at level 8 and passed over, one whose status cannot be read is passed over; so
/// is a directory that cannot be opened, after a report at level 8. An entry that cannot be read
/// ends the walk as the last one does, deliberately without a report.
void for_each_regular_file(const char *directory, regular_file_callback callback,
                           std::intptr_t user);

/// \return the part of \p path behind its last '/', inside \p path, "" when it ends in one; "/" for
/// "/"; a constant "." for null and "".
const char *path_base_name(const char *path);

#pragma GCC visibility pop
