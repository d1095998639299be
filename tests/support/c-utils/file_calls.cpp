#include "tests/support/c-utils/file_calls.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

FileCalls file_calls;

namespace {

bool contains(const std::vector<std::string> &texts, const std::string &text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// Notes a call; sets errno when it is to fail.
bool fails(const std::string &name, const std::string &argument)
{
    file_calls.calls.push_back(name + " " + argument);
    if (!contains(file_calls.failing, name)) {
        return false;
    }
    errno = file_calls.error;
    return true;
}

int scripted_status(const char *name, const char *path, struct stat *status)
{
    const auto place = file_calls.modes.find(path);
    if (fails(name, path)) {
        return -1;
    }
    if (place != file_calls.modes.end() && place->second == 0) {
        errno = EACCES;
        return -1;
    }
    *status = {};
    status->st_mode = (place != file_calls.modes.end() ? place->second : file_calls.mode) | 0600;
    return 0;
}

// What a scripted opendir returns: only its address matters.
char pretended_directory;

} // namespace

// The symbols that the linker's option --wrap makes of the names of the calls.
extern "C" {

std::FILE *__real_fopen(const char *path, const char *mode);
std::FILE *__wrap_fopen(const char *path, const char *mode);
std::FILE *__real_fopen64(const char *path, const char *mode);
std::FILE *__wrap_fopen64(const char *path, const char *mode);
int __real_fclose(std::FILE *stream);
int __wrap_fclose(std::FILE *stream);
int __real_chmod(const char *path, mode_t mode);
int __wrap_chmod(const char *path, mode_t mode);
int __real_stat(const char *path, struct stat *status);
int __wrap_stat(const char *path, struct stat *status);
int __real_stat64(const char *path, struct stat *status);
int __wrap_stat64(const char *path, struct stat *status);
int __real_lstat(const char *path, struct stat *status);
int __wrap_lstat(const char *path, struct stat *status);
int __real_lstat64(const char *path, struct stat *status);
int __wrap_lstat64(const char *path, struct stat *status);
int __real_unlink(const char *path);
int __wrap_unlink(const char *path);
int __real_rmdir(const char *path);
int __wrap_rmdir(const char *path);
DIR *__real_opendir(const char *path);
DIR *__wrap_opendir(const char *path);
dirent *__real_readdir(DIR *directory);
dirent *__wrap_readdir(DIR *directory);
dirent *__real_readdir64(DIR *directory);
dirent *__wrap_readdir64(DIR *directory);
int __real_closedir(DIR *directory);
int __wrap_closedir(DIR *directory);
std::time_t __real_time(std::time_t *result);
std::time_t __wrap_time(std::time_t *result);

std::FILE *__wrap_fopen64(const char *path, const char *mode)
{
    if (!file_calls.active) {
        return __real_fopen64(path, mode);
    }
    return fails("fopen", std::string(path) + " " + mode) ? nullptr
                                                          : __real_fopen64("/dev/null", "r+");
}

std::FILE *__wrap_fopen(const char *path, const char *mode)
{
    if (!file_calls.active) {
        return __real_fopen(path, mode);
    }
    ++file_calls.narrow_calls;
    return __wrap_fopen64(path, mode);
}

int __wrap_fclose(std::FILE *stream)
{
    const int result = __real_fclose(stream);
    return file_calls.active && fails("fclose", "stream") ? -1 : result;
}

int __wrap_chmod(const char *path, mode_t mode)
{
    if (!file_calls.active) {
        return __real_chmod(path, mode);
    }
    return fails("chmod", std::string(path) + " " + std::to_string(mode)) ? -1 : 0;
}

int __wrap_stat64(const char *path, struct stat *status)
{
    return file_calls.active ? scripted_status("stat", path, status) : __real_stat64(path, status);
}

int __wrap_stat(const char *path, struct stat *status)
{
    if (!file_calls.active) {
        return __real_stat(path, status);
    }
    ++file_calls.narrow_calls;
    return scripted_status("stat", path, status);
}

int __wrap_lstat64(const char *path, struct stat *status)
{
    return file_calls.active ? scripted_status("lstat", path, status)
                             : __real_lstat64(path, status);
}

int __wrap_lstat(const char *path, struct stat *status)
{
    if (!file_calls.active) {
        return __real_lstat(path, status);
    }
    ++file_calls.narrow_calls;
    return scripted_status("lstat", path, status);
}

#if defined(_TIME_BITS) // the calls of 32-bit programs with times of 64 bits
int __real___stat64_time64(const char *path, struct stat *status);
int __wrap___stat64_time64(const char *path, struct stat *status);
int __real___lstat64_time64(const char *path, struct stat *status);
int __wrap___lstat64_time64(const char *path, struct stat *status);
std::time_t __real___time64(std::time_t *result);
std::time_t __wrap___time64(std::time_t *result);

int __wrap___stat64_time64(const char *path, struct stat *status)
{
    return file_calls.active ? scripted_status("stat", path, status)
                             : __real___stat64_time64(path, status);
}

int __wrap___lstat64_time64(const char *path, struct stat *status)
{
    return file_calls.active ? scripted_status("lstat", path, status)
                             : __real___lstat64_time64(path, status);
}

std::time_t __wrap___time64(std::time_t *result)
{
    const std::time_t now = __real___time64(result);
    if (file_calls.clock_changes_errno) {
        errno = EDOM;
    }
    return now;
}
#endif

int __wrap_unlink(const char *path)
{
    if (!file_calls.active) {
        return __real_unlink(path);
    }
    return fails("unlink", path) ? -1 : 0;
}

int __wrap_rmdir(const char *path)
{
    if (!file_calls.active) {
        return __real_rmdir(path);
    }
    return fails("rmdir", path) ? -1 : 0;
}

DIR *__wrap_opendir(const char *path)
{
    if (!file_calls.active) {
        return __real_opendir(path);
    }
    return fails("opendir", path) ? nullptr : reinterpret_cast<DIR *>(&pretended_directory);
}

dirent *__wrap_readdir64(DIR *directory)
{
    if (!file_calls.active) {
        return __real_readdir64(directory);
    }
    if (file_calls.next_entry < file_calls.entries.size()) {
        return &file_calls.entries[file_calls.next_entry++];
    }
    fails("readdir", "end");
    return nullptr;
}

dirent *__wrap_readdir(DIR *directory)
{
    if (!file_calls.active) {
        return __real_readdir(directory);
    }
    ++file_calls.narrow_calls;
    return __wrap_readdir64(directory);
}

int __wrap_closedir(DIR *directory)
{
    if (!file_calls.active) {
        return __real_closedir(directory);
    }
    return fails("closedir", "directory") ? -1 : 0;
}

std::time_t __wrap_time(std::time_t *result)
{
    const std::time_t now = __real_time(result);
    if (file_calls.clock_changes_errno) {
        errno = EDOM;
    }
    return now;
}

} // extern "C"
