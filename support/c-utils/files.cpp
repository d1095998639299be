#include "support/c-utils/files.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "support/error.h"

std::int32_t open_file_count = 0;
std::int32_t file_opened_for_reading = 0;

namespace {

constexpr mode_t everybody_reads_and_writes = 0666;

/// \param reason the text of the error of the failed open
void report_open_failure(const char *path, const char *mode, const char *reason)
{
    // Deliberately 'a' is reported as an open, though its permissions are those of a write.
    if (mode[0] == 'w') {
        report_message(9, "Write of %s failed at open: %s\n", path, reason);
    } else {
        report_message(9, "Open of %s failed: %s\n", path, reason);
    }
}

} // namespace

std::FILE *open_file(const char *path, const char *mode, int flags)
{
    std::FILE *const stream = std::fopen(path, mode);
    if (stream != nullptr) {
        ++open_file_count;
        if (mode[0] == 'w' || mode[0] == 'a') {
            chmod(path, everybody_reads_and_writes);
        } else if (mode[0] == 'r') {
            file_opened_for_reading = 1;
        }
        return stream;
    }
    if ((flags & (OPEN_FAIL_FATAL | OPEN_FAIL_REPORT)) != 0) {
        report_open_failure(path, mode, std::strerror(errno));
    }
    if ((flags & OPEN_FAIL_FATAL) != 0) {
        // Deliberately the same place for every file.
        throw_abort(1, "support/c-utils", 291);
    }
    return nullptr;
}

std::FILE *open_file_with_fallback(const char *path, const char *fallback, const char *mode,
                                   int flags)
{
    std::FILE *const stream = open_file(path, mode, flags);
    return stream != nullptr ? stream : open_file(fallback, mode, flags);
}

int close_file(std::FILE *stream)
{
    if (stream == nullptr) {
        return 0;
    }
    const int result = std::fclose(stream);
    if (result == -1) {
        const int reason = errno; // the report reads the clock, which may change it
        report_message(9, "Close file failed.");
        errno = reason;
        std::perror("Reason");
    }
    --open_file_count;
    return result;
}

int file_exists(const char *path)
{
    struct stat status;
    return path != nullptr && path[0] != '\0' && stat(path, &status) == 0 ? 1 : 0;
}

int remove_path(const char *path)
{
    if (path == nullptr || path[0] == '\0') {
        return 0;
    }
    struct stat status;
    if (lstat(path, &status) != 0) {
        return -1;
    }
    return (status.st_mode & S_IFDIR) != 0 ? rmdir(path) : unlink(path);
}

const char *path_base_name(const char *path)
{
    if (path == nullptr || path[0] == '\0') {
        return ".";
    }
    if (std::strcmp(path, "/") == 0) {
        return path;
    }
    const char *const slash = std::strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}
