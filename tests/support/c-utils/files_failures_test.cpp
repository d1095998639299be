// The file functions with every call failing in turn, on real files; see tests/failures.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/failures/failure_scenario.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

int result;
int error;
std::FILE *stream;
std::int32_t open_before;
char walked[512];

/// Made when it is needed, and removed at the end of the program.
const std::string &directory()
{
    static const TemporaryDirectory made;
    return made.path();
}

const char *path_of(const char *name)
{
    static std::string path;
    path = directory() + "/" + name;
    return path.c_str();
}

/// Makes the file when it is not there: replacing it each time would wait for the disk.
std::string file_at(const char *name)
{
    const char *const path = path_of(name);
    return is_there(path) ? path : make_file(path);
}

const char *file;
const char *missing;

void prepare_files()
{
    static std::string file_path;
    static std::string missing_path;
    file_path = file_at("file");
    missing_path = path_of("none/missing");
    file = file_path.c_str();
    missing = missing_path.c_str();
    set_message_hook(nullptr);
    set_print_stream(nullptr);
    set_print_indent(0);
    open_before = open_file_count;
    stream = nullptr;
    result = -99;
    errno = 0;
}

/// What a report shows on standard error while calls fail.
std::string reported_through(const Failure &failure, const std::string &text)
{
    const std::string shown = failure.call == Call::Format ? "" : text;
    const std::string line = failure.call == Call::Format ? "" : text + "\n";
    return (failure.hits(Call::Print, 1) ? "" : "Error: " + line + "\n") +
           (failure.hits(Call::Print, 2) ? "" : "Error: " + shown + "\a\n");
}

std::string stream_outcome()
{
    const bool is_open = stream != nullptr;
    const std::string outcome = (is_open ? "a stream, " : "null, ") +
                                std::to_string(open_file_count - open_before) + " open\n";
    if (is_open) {
        close_file(stream);
        stream = nullptr;
    }
    return outcome;
}

const std::string opened = "a stream, 1 open\n";
const std::string not_opened = "null, 0 open\n";

std::string open_failure(const std::string &path, int reason)
{
    return "Open of " + path + " failed: " + std::strerror(reason);
}

FailureScenario open_for_reading()
{
    return {"OpenFileForReading",
            {"open_file"},
            {Call::Fopen},
            prepare_files,
            [] { stream = open_file(file, "r", OPEN_FAIL_REPORT); },
            stream_outcome,
            opened,
            [](const Failure &failure) {
                return not_opened + reported("Error", open_failure(file, failure.error));
            },
            true};
}

FailureScenario open_silently()
{
    return {"OpenFileSilently",
            {"open_file"},
            {Call::Fopen},
            prepare_files,
            [] { stream = open_file(file, "r", 0); },
            stream_outcome,
            opened,
            [](const Failure &) { return not_opened; },
            true};
}

FailureScenario open_or_give_up()
{
    return {"OpenFileFatally",
            {"open_file"},
            {Call::Fopen},
            prepare_files,
            [] { stream = open_file(file, "r", OPEN_FAIL_FATAL); },
            stream_outcome,
            opened,
            [](const Failure &failure) {
                return "abort 1 support/c-utils 291 " + not_opened +
                       reported("Error", open_failure(file, failure.error));
            },
            true};
}

/// A failure to change the permissions is not reported.
FailureScenario open_to_change(const char *name, void (*call)(), bool writes)
{
    return {name,
            {"open_file"},
            {Call::Fopen, Call::Chmod},
            prepare_files,
            call,
            stream_outcome,
            opened,
            writes ? +[](const Failure &failure) {
                return failure.call == Call::Chmod
                           ? opened
                           : not_opened + reported("Error", std::string("Write of ") + file +
                                                                " failed at open: " +
                                                                std::strerror(failure.error));
            }
                   : +[](const Failure &failure) {
                return failure.call == Call::Chmod
                           ? opened
                           : not_opened + reported("Error", open_failure(file, failure.error));
            },
            true};
}

/// Here the report's own calls fail.
FailureScenario open_missing()
{
    prepare_files();
    return {"OpenMissingFile",
            {"open_file"},
            {Call::Fopen, Call::Time, Call::Ctime, Call::Format, Call::Print, Call::Flush},
            prepare_files,
            [] { stream = open_file(missing, "r", OPEN_FAIL_REPORT); },
            stream_outcome,
            not_opened + reported("Error", open_failure(missing, ENOENT)),
            [](const Failure &failure) {
                const int reason = failure.call == Call::Fopen ? failure.error : ENOENT;
                return not_opened + reported_through(failure, open_failure(missing, reason));
            },
            true};
}

FailureScenario open_with_fallback()
{
    return {"OpenFileWithFallback",
            {"open_file_with_fallback"},
            {Call::Fopen},
            prepare_files,
            [] { stream = open_file_with_fallback(missing, file, "r", 0); },
            stream_outcome,
            opened,
            [](const Failure &failure) {
                return failure.number == 1 && !failure.for_ever() ? opened : not_opened;
            },
            true};
}

/// The stream is gone also when closing it failed; then the reason stands behind the report.
FailureScenario close_stream()
{
    return {"CloseFile",
            {"close_file"},
            {Call::Fclose},
            [] {
                prepare_files();
                stream = open_file(file, "r", 0);
            },
            [] { result = close_file(stream); },
            [] {
                stream = nullptr;
                return std::to_string(result) + ", " +
                       std::to_string(open_file_count - open_before) + " open\n";
            },
            "0, 0 open\n",
            [](const Failure &failure) {
                return std::string("-1, 0 open\nError: Close file failed.\n"
                                   "Error: Close file failed.\a\nReason: ") +
                       std::strerror(failure.error) + "\n";
            },
            true};
}

FailureScenario existence()
{
    return {"FileExists",
            {"file_exists"},
            {Call::Stat},
            prepare_files,
            [] { result = file_exists(file); },
            [] { return std::to_string(result); },
            "1",
            [](const Failure &) -> std::string { return "0"; }};
}

/// errno stays as the system set it, and what could not be removed stays too.
FailureScenario removal(const char *name, Call remover, void (*prepare)())
{
    return {
        name,
        {"remove_path"},
        {Call::Lstat, remover},
        prepare,
        [] {
            result = remove_path(file);
            error = errno;
        },
        [] {
            return std::to_string(result) + (result == 0 ? "" : " " + std::to_string(error)) +
                   (is_there(file) ? " there" : " gone");
        },
        "0 gone",
        [](const Failure &failure) { return "-1 " + std::to_string(failure.error) + " there"; }};
}

void prepare_directory()
{
    prepare_files();
    static std::string path;
    path = path_of("empty");
    mkdir(path.c_str(), 0700);
    file = path.c_str();
}

void prepare_walk()
{
    prepare_files();
    walked[0] = '\0';
    for (const char *const name : {"walk", "walk/folder"}) {
        mkdir(path_of(name), 0700);
    }
    for (const char *const name : {"walk/a", "walk/b", "walk/c"}) {
        file_at(name);
    }
    static std::string path;
    path = path_of("walk");
    file = path.c_str();
}

int collect(const char *path, std::intptr_t)
{
    std::strcat(walked, path_base_name(path));
    return 0;
}

/// The names of the directory in the system's order, "." and ".." too.
std::vector<std::string> names_in_order(const char *path)
{
    std::vector<std::string> names;
    DIR *const entries = opendir(path);
    while (const dirent *const entry = readdir(entries)) {
        names.emplace_back(entry->d_name);
    }
    closedir(entries);
    return names;
}

/// What a walk finds when statuses or entries cannot be read.
std::string found_through(const Failure &failure)
{
    std::string found;
    int entries = 0;
    int statuses = 0;
    for (const std::string &name : names_in_order(file)) {
        if (failure.call == Call::Readdir && ++entries >= failure.number) {
            break; // an entry that cannot be read ends the walk
        }
        if (name == "." || name == "..") {
            continue;
        }
        ++statuses;
        if (name != "folder" && !failure.hits(Call::Stat, statuses)) {
            found += name;
        }
    }
    return found + "\n";
}

/// A failed close is not reported.
FailureScenario walk()
{
    prepare_walk();
    return {"WalkDirectory",
            {"for_each_regular_file"},
            {Call::Stat, Call::Opendir, Call::Readdir, Call::Closedir},
            prepare_walk,
            [] { for_each_regular_file(file, collect, 0); },
            [] { return std::string(walked) + "\n"; },
            found_through({}),
            [](const Failure &failure) {
                return failure.call == Call::Opendir
                           ? "\n" +
                                 reported("Warning", std::string("Can't open directory ") + file +
                                                         ": error " + std::strerror(failure.error))
                           : found_through(failure);
            },
            true};
}

} // namespace

std::vector<FailureScenario> file_scenarios()
{
    return {
        open_for_reading(),
        open_silently(),
        open_or_give_up(),
        open_to_change(
            "OpenFileForWriting", [] { stream = open_file(file, "w", OPEN_FAIL_REPORT); }, true),
        open_to_change(
            "OpenFileForAppending", [] { stream = open_file(file, "a", OPEN_FAIL_REPORT); }, false),
        open_missing(),
        open_with_fallback(),
        close_stream(),
        existence(),
        removal("RemoveFile", Call::Unlink, prepare_files),
        removal("RemoveDirectory", Call::Rmdir, prepare_directory),
        walk(),
    };
}
