/// \file
/// Mac OS X's desktop: opening URLs and files with the user's applications, and finding the
/// directories of bundles. Main thread only; no state is kept between calls.
///
/// Strings are NUL-terminated, in the system's default encoding; paths are in POSIX style. Each
/// call releases the Core Foundation objects that it creates, except the one that
/// main_bundle_path() documents.
///
/// Except where documented otherwise, the caller passes no null pointer, and no size greater than
/// its buffer.
#pragma once

#include <CoreServices/CoreServices.h>

#pragma GCC visibility push(default)

/// Opens a URL with the user's application for it.
/// \param bytes the URL; needs no NUL
/// \param length the length of the URL in bytes
/// \return the status of Launch Services, 0 for success; -30773 if \p bytes is not a URL or
/// \p length is negative.
int open_url(const char *bytes, long length);

/// Opens a file with the user's application for it.
/// \param path the file's path; its conversion is not checked, so that Launch Services reports an
///     invalid one
/// \return the status of Launch Services, 0 for success.
int open_file(const char *path);

/// Opens the file of an FSRef with the user's application for it.
/// \param ref the file
/// \return the status of Launch Services, 0 for success.
int open_fsref(FSRef ref);

/// Opens a file or a URL with the user's application for it.
/// \param target a path if it begins with '/', otherwise a URL; a relative path counts as a URL
/// \return 0, or -1 for any failure.
int open_document(const char *target);

/// Writes the path of a part of the program's own bundle into \p buffer. Kinds 2, 3 and 4 are
/// relative to the bundle, such as "Contents/Resources"; a program outside a bundle has an absolute
/// path for 2 and 3 and "PlugIns" for 4. Prefix a path that does not begin with '/' with that of
/// kind 0 and a slash.
/// \param buffer receives the path
/// \param size the size of \p buffer in bytes. A path that does not fit gives "", without a report;
///     a size below 1 writes nothing.
/// \param kind 1 the executable, 2 the support files, 3 the resources, 4 the built-in plug-ins, 5
///     the resource \p name; 0 and any other kind the bundle itself
/// \param name used by kind 5 only; may be null otherwise. On purpose: its Core Foundation string
///     is not released.
/// \return \p buffer, or null if there is no bundle or no such part of it.
char *main_bundle_path(char *buffer, int size, int kind, const char *name);

/// Writes the path of the host plug-in bundle.
/// \param buffer receives the path, or "" if it does not fit
/// \param size the size of \p buffer in bytes; a size below 1 writes nothing
/// \return \p buffer, or null if that bundle is not loaded.
char *host_bundle_path(char *buffer, int size);

/// Writes the path of a resource of the host plug-in bundle.
/// \param name the resource's name
/// \param buffer receives the path, or "" if it does not fit; unchanged if the bundle is not loaded
///     or has no such resource
/// \param size the size of \p buffer in bytes; a size below 1 writes nothing
/// \return 0 in every case.
int host_bundle_resource_path(const char *name, char *buffer, int size);

#pragma GCC visibility pop
