#include "tool/output_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "support/error.h"
#include "tool/output.h"
#include "tool/printable.h"

namespace corvella {

namespace {

constexpr int most_links = 40;

/// On purpose silent about a pipe whose reader is gone: it has seen what it wanted.
bool report_failure(const char *path)
{
    if (errno == EPIPE) {
        return false;
    }
    report_message(9, "Write of %s failed: %s", path, std::strerror(errno));
    return false;
}

/// The folder of a path with its last slash; "" for a name alone.
std::string folder_of(const std::string &path)
{
    return path.substr(0, path.rfind('/') + 1);
}

/// The path behind all links, also when nothing is there yet.
std::string resolved_path(std::string path)
{
    char target[4096];
    for (int i = 0; i < most_links; ++i) {
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0 || static_cast<std::size_t>(length) == sizeof target) {
            break;
        }
        std::string link(target, static_cast<std::size_t>(length));
        if (link[0] != '/') {
            link.insert(0, folder_of(path));
        }
        path = link;
    }
    return path;
}

/// The permissions of the file that is replaced, or those of any new file.
mode_t permissions_for(const std::string &path)
{
    struct stat status;
    if (stat(path.c_str(), &status) == 0) {
        return status.st_mode & 0777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

bool write_all(std::FILE *file, std::string_view bytes)
{
    const bool written =
        std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
    const int reason = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written) {
        errno = reason;
    }
    return written && closed;
}

/// Whether the path leads to what standard output is, as /dev/stdout does.
bool is_standard_output(const struct stat &status)
{
    struct stat output;
    return fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == status.st_dev &&
           output.st_ino == status.st_ino;
}

/// A device or a pipe is not to be replaced by a file. A terminal gets printable text.
bool write_directly(const char *path, std::string_view bytes)
{
    std::FILE *const file = std::fopen(path, "w");
    if (file == nullptr) {
        return report_failure(path);
    }
    const bool written =
        isatty(fileno(file)) != 0 ? write_all(file, printable_text(bytes)) : write_all(file, bytes);
    return written || report_failure(path);
}

/// Whether a new file can take the place of \p path.
bool has_writable_folder(const char *path)
{
    const std::string folder = folder_of(resolved_path(path));
    return access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0;
}

/// Whether a device opens: /dev/tty does not without a terminal. Opening it does no harm, because
/// writing to it opens it too.
bool device_opens(const char *path)
{
    const int descriptor = open(path, O_WRONLY | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return false;
    }
    close(descriptor);
    return true;
}

/// A pipe is not opened here: its reader would see the end of the file.
bool is_writable(const char *path, const struct stat &status)
{
    if (is_standard_output(status)) {
        return true;
    }
    if (S_ISSOCK(status.st_mode)) {
        errno = ENXIO; // as open() fails
        return false;
    }
    if (S_ISCHR(status.st_mode)) {
        return device_opens(path);
    }
    return S_ISREG(status.st_mode) ? has_writable_folder(path) : access(path, W_OK) == 0;
}

/// Writes the new file, open at \p descriptor, and puts it in the place of \p path.
bool fill_and_rename(int descriptor, const std::string &new_path, const std::string &path,
                     std::string_view bytes)
{
    fchmod(descriptor, permissions_for(path));
    std::FILE *const file = fdopen(descriptor, "w");
    if (file == nullptr) {
        close(descriptor);
        return false;
    }
    return write_all(file, bytes) && std::rename(new_path.c_str(), path.c_str()) == 0;
}

} // namespace

bool check_output_file(const char *path)
{
    struct stat status;
    if (stat(path, &status) != 0) {
        const bool may_be_new = errno == ENOENT && path[0] != '\0';
        return (may_be_new && has_writable_folder(path)) || report_failure(path);
    }
    if (S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        return report_failure(path);
    }
    return is_writable(path, status) || report_failure(path);
}

bool write_output_file(const char *path, std::string_view bytes)
{
    struct stat status;
    const bool exists = stat(path, &status) == 0;
    if (!exists && errno != ENOENT) {
        return report_failure(path); // links in a circle, say, which are not to be replaced
    }
    if (exists && is_standard_output(status)) {
        return show_reply_text(bytes);
    }
    if (exists && !S_ISREG(status.st_mode)) {
        return write_directly(path, bytes);
    }
    const std::string final_path = resolved_path(path);
    std::string new_path = folder_of(final_path) + ".corvella.XXXXXX";
    const int descriptor = mkstemp(new_path.data());
    if (descriptor < 0) {
        return report_failure(path);
    }
    if (!fill_and_rename(descriptor, new_path, final_path, bytes)) {
        report_failure(path);
        unlink(new_path.c_str());
        return false;
    }
    return true;
}

} // namespace corvella
