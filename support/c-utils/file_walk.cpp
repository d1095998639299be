#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

#include "support/c-utils/files.h"
#include "support/error.h"

namespace {

constexpr std::size_t path_size = 1024;

bool is_directory_itself_or_parent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

/// The path of the entry at hand: the directory and a slash, which stay, and the entry's name.
struct walk_path {
    const char *directory;
    std::size_t name_at; ///< where the name begins, if the directory fits
    char bytes[path_size];
};

void begin_path(walk_path &path, const char *directory)
{
    const std::size_t length = std::strlen(directory);
    path.directory = directory;
    path.name_at = length + 1;
    if (path.name_at < path_size) {
        std::memcpy(path.bytes, directory, length);
        path.bytes[length] = '/';
    }
}

/// \return whether the path fits; if not, it is reported.
bool put_name(walk_path &path, const char *name)
{
    const std::size_t size = std::strlen(name) + 1;
    if (path.name_at > path_size || size > path_size - path.name_at) {
        report_message(8, "Path too long: %s/%s\n", path.directory, name);
        return false;
    }
    std::memcpy(path.bytes + path.name_at, name, size);
    return true;
}

bool is_regular_file(const char *path)
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

void for_each_regular_file(const char *directory, regular_file_callback callback,
                           std::intptr_t user)
{
    // Closes the directory on every way out, an exception of the callback's included.
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(opendir(directory), closedir);
    if (entries == nullptr) {
        report_message(8, "Can't open directory %s: error %s\n", directory, std::strerror(errno));
        return;
    }
    walk_path path;
    begin_path(path, directory);
    while (const dirent *const entry = readdir(entries.get())) {
        if (!is_directory_itself_or_parent(entry->d_name) && put_name(path, entry->d_name) &&
            is_regular_file(path.bytes)) {
            callback(path.bytes, user);
        }
    }
}
