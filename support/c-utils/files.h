/// \file
/// Opening, closing, testing, removing and enumerating files. Paths are NUL-terminated bytes in the
/// file system's encoding.
#pragma once

#include <cstdint>
#include <cstdio>

#pragma GCC visibility push(default)

/// What open_file() does if a file does not open; 0 does nothing.
enum {
    OPEN_FAIL_FATAL = 1,  ///< reports it and throws CorvellaAbortException
    OPEN_FAIL_REPORT = 2, ///< reports it at level 9
};

/// Streams opened by open_file() and not yet closed by close_file(). Nothing here reads it.
extern std::int32_t open_file_count;

/// 1 once open_file() has opened a file with a mode that begins with 'r'; 0 before. Nothing here
/// reads it.
extern std::int32_t file_opened_for_reading;

/// Receives the path of a regular file and the user value of the walk. The path is valid only
/// during the call. The result is ignored.
using regular_file_callback = int (*)(const char *path, std::intptr_t user);

/// Opens a file as fopen (POSIX) does.
///
/// A failure is reported with the reason from errno. On purpose: a file opened with a mode that
/// begins with 'w' or 'a' gets the permissions rw-rw-rw-, even if it existed and regardless of the
/// file-creation mask; a failing chmod is ignored.
///
/// \param path the file's path
/// \param mode a mode of fopen
/// \param flags OPEN_FAIL_FATAL, OPEN_FAIL_REPORT, both or 0; other bits are ignored
/// \return the stream, to be closed with close_file(); null if the file does not open.
/// \throws CorvellaAbortException with code 1, file "support/c-utils" and line 291 instead of
/// returning null, if \p flags has OPEN_FAIL_FATAL.
std::FILE *open_file(const char *path, const char *mode, int flags);

/// Opens a file, or a second one if the first does not open, both as open_file() does.
///
/// Each failure is reported. On purpose: OPEN_FAIL_FATAL throws at the first failure.
///
/// \param path the path to try first
/// \param fallback the path to try second
/// \param mode a mode of fopen
/// \param flags as in open_file()
/// \return the stream, to be closed with close_file(); null if neither file opens.
/// \throws CorvellaAbortException as open_file() does.
std::FILE *open_file_with_fallback(const char *path, const char *fallback, const char *mode,
                                   int flags);

/// Closes a stream of open_file().
///
/// A failure is reported at level 9, and its reason is then printed to standard error. The stream
/// is closed and no longer counted even then.
///
/// \param stream the stream; null does nothing
/// \return 0, or -1 if written data may be lost.
int close_file(std::FILE *stream);

/// Tests whether a path exists, as a file of any kind. Follows links.
/// \param path the path; null and "" do not exist
/// \return 1 or 0; a failed stat counts as absent.
int file_exists(const char *path);

/// Removes a file, a link or an empty directory. Does not follow links.
///
/// On purpose: only the directory bit of the mode decides between rmdir and unlink. Sockets and
/// block devices have that bit too, and are not removed.
///
/// \param path the path; null and "" do nothing
/// \return 0, or -1 with errno as the system set it.
int remove_path(const char *path);

/// Calls a function for each regular file of a directory, in the system's order.
///
/// Links to files are included; subdirectories are not entered. The callback may remove the file,
/// walk another directory or throw, but must not remove the directory.
///
/// An entry is skipped if its status cannot be read, or, with a report at level 8, if its path does
/// not fit into 1024 bytes including the NUL. A directory that does not open is reported at level
/// 8. On purpose: a read error ends the walk without a report, like the last entry.
///
/// \param directory the directory's path
/// \param callback called with the path of each file
/// \param user passed to \p callback
void for_each_regular_file(const char *directory, regular_file_callback callback,
                           std::intptr_t user);

/// Returns the part of a path after its last '/'.
/// \param path the path; may be null
/// \return a pointer into \p path, "" if it ends in '/'; "/" for "/"; a constant "." for null and
/// "".
const char *path_base_name(const char *path);

#pragma GCC visibility pop
