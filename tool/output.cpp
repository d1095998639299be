#include "tool/output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>

#include "support/c-utils.h"
#include "support/error.h"

namespace {

bool output_is_framed = false;

bool report_write_failure(const char *name)
{
    report_message(9, "Write of %s failed: %s\n", name, std::strerror(errno));
    return false;
}

/// \return whether a file is there that is not to be replaced by another.
bool is_special_file(const char *path)
{
    struct stat status;
    return stat(path, &status) == 0 && !S_ISREG(status.st_mode);
}

/// The path behind all links, so that a link stays one when its file is replaced.
std::string resolved_path(const char *path)
{
    char *const resolved = realpath(path, nullptr);
    const std::string result = resolved != nullptr ? resolved : path;
    std::free(resolved);
    return result;
}

/// Opens, writes and closes; each failure is reported.
bool write_whole_file(const char *path, std::string_view bytes)
{
    std::FILE *const file = open_file(path, "w", OPEN_FAIL_REPORT);
    if (file == nullptr) {
        return false;
    }
    bool written =
        std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
    if (!written) {
        report_write_failure(path);
    }
    return close_file(file) == 0 && written;
}

} // namespace

void say_result(const char *tag, const char *text)
{
    if (output_is_framed) {
        write_raw_message(text, tag);
        return;
    }
    set_print_stream(stdout);
    print_indented("%s\n", text);
    set_print_stream(nullptr);
}

void frame_output()
{
    output_is_framed = true;
    set_output_hook(test_output_hook);
    set_message_hook(test_message_hook);
}

bool write_standard_output(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
        std::fflush(stdout) == 0) {
        return true;
    }
    return report_write_failure("standard output");
}

bool write_output_file(const char *path, std::string_view bytes)
{
    if (is_special_file(path)) {
        return write_whole_file(path, bytes);
    }
    const std::string final_path = resolved_path(path);
    const std::string partial_path = final_path + ".part";
    if (!write_whole_file(partial_path.c_str(), bytes)) {
        remove_path(partial_path.c_str());
        return false;
    }
    if (std::rename(partial_path.c_str(), final_path.c_str()) != 0) {
        report_write_failure(path);
        remove_path(partial_path.c_str());
        return false;
    }
    return true;
}
