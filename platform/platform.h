/// \file
/// Mac OS X's desktop: opening URLs and files with the user's applications, and finding the
/// directories of bundles. Main thread only; no state is kept between calls.
///
/// Texts are NUL-terminated, in the system's default encoding; paths are in POSIX style. Every Core
/// Foundation object made on the way is released, but the one that main_bundle_path() names.
///
/// The caller's duty, where it is not said otherwise: no pointer is null, and a size is not beyond
/// its buffer.
#pragma once

#include <CoreServices/CoreServices.h>

#pragma GCC visibility push(default)

/// Opens the URL in exactly \p length bytes of text.
/// \return the status of Launch Services, 0 for success; -30773 when the text makes no URL or
/// \p length is negative.
int open_url(const char *bytes, long length);

/// Opens a file with the user's application for it. The path's own conversion is not checked: what
/// Launch Services says of the result is returned. \return the status of Launch Services.
int open_file(const char *path);

/// Opens the file that \p ref refers to. \return the status of Launch Services.
int open_fsref(FSRef ref);

/// Opens a path when \p target begins with '/', otherwise a URL. A relative path is taken for a
/// URL. \return 0, or -1 for any failure.
int open_document(const char *target);

/// Writes the path of a part of the program's own bundle into \p buffer. Kinds 2, 3 and 4 are
/// relative to the bundle, such as "Contents/Resources"; a program outside a bundle has an absolute
/// path for 2 and 3 and "PlugIns" for 4. Prefix a path that does not begin with '/' with that of
/// kind 0 and a slash.
/// \param buffer receives the path
/// \param size of \p buffer in bytes, the NUL included; a path that does not fit is not reported
///     and leaves ""; a size below 1 writes nothing
/// \param kind 1 the executable, 2 the support files, 3 the resources, 4 the built-in plug-ins, 5
///     the resource \p name; 0 and any other kind the bundle itself
/// \param name used by kind 5 only; may be null otherwise. On purpose: its Core Foundation string
///     is not released.
/// \return \p buffer, or null when there is no bundle or no such part of it.
char *main_bundle_path(char *buffer, int size, int kind, const char *name);

/// Writes the path of the host plug-in bundle into \p buffer of \p size bytes; "" when it does not
/// fit.
/// \return \p buffer, or null when that bundle is not loaded.
char *host_bundle_path(char *buffer, int size);

/// Writes the path of a resource of the host plug-in bundle into \p buffer of \p size bytes; ""
/// when it does not fit. The buffer is left alone when the bundle is not loaded or has no such
/// resource. \return 0 in every case.
int host_bundle_resource_path(const char *name, char *buffer, int size);

#pragma GCC visibility pop
