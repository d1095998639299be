#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

#include "support/c-utils/files.h"
#include "support/c-utils/format.h"
#include "support/error.h"

namespace {

constexpr std::size_t path_size = 1024;

bool is_directory_itself_or_parent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

/// \return whether the path fits; if not, it is reported.
bool compose_path(char *path, const char *directory, const char *name)
{
    const int length = format_string_bounded(path, path_size, "%s/%s", directory, name);
    if (length >= 0 && static_cast<std::size_t>(length) < path_size) {
        return true;
    }
    report_message(8, "Path too long: %s/%s\n", directory, name);
    return false;
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
    char path[path_size];
    while (const dirent *const entry = readdir(entries.get())) {
        if (!is_directory_itself_or_parent(entry->d_name) &&
            compose_path(path, directory, entry->d_name) && is_regular_file(path)) {
            callback(path, user);
        }
    }
}
