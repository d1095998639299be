#include "tool/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/printable.h"

namespace corvella {

namespace {

bool output_is_framed = false;
bool some_results_are_lost = false;
bool loss_is_reported = false;

/// Reports the first loss only. On purpose silent about a reader that is gone: it has seen what it
/// wanted.
void report_lost_output()
{
    if (errno == EPIPE || loss_is_reported) {
        return;
    }
    loss_is_reported = true;
    report_message(9, "Write of standard output failed: %s", std::strerror(errno));
}

/// One frame a message, and one line a frame.
int frame_message(int level, const char *text)
{
    std::string line = sanitized_for(STDOUT_FILENO, text);
    line.erase(line.find_last_not_of('\n') + 1);
    line_breaks_to_spaces(line.c_str(), line.data());
    return test_message_hook(level, line.c_str());
}

} // namespace

void print_result(const char *tag, const std::string &text)
{
    if (output_is_framed) {
        write_raw_message(sanitized_for(STDOUT_FILENO, text).c_str(), tag);
    } else {
        const std::string line = sanitized_for(STDOUT_FILENO, text) + "\n";
        std::fwrite(line.data(), 1, line.size(), stdout);
        std::fflush(stdout);
    }
    if (std::ferror(stdout) != 0 && !some_results_are_lost) {
        report_lost_output();
        some_results_are_lost = true;
    }
}

void print_named_result(const char *tag, const char *name, const std::string &text)
{
    const std::string label = std::string(name) + ": ";
    if (!output_is_framed) {
        print_result(tag, label + text);
        return;
    }
    for (const std::string &line : lines_of(text)) {
        print_result(tag, label + line);
    }
}

bool results_were_lost()
{
    return some_results_are_lost;
}

void frame_output()
{
    output_is_framed = true;
    set_output_hook(test_output_hook);
    set_message_hook(frame_message);
}

bool write_standard_output(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
        std::fflush(stdout) == 0) {
        return true;
    }
    report_lost_output();
    return false;
}

bool show_reply_text(std::string_view text)
{
    if (isatty(STDOUT_FILENO) != 0) {
        return write_standard_output(printable_text(text));
    }
    return write_standard_output(text);
}

void report_error(const std::string &text)
{
    report_message(9, "%s", sanitized_for(STDERR_FILENO, text).c_str());
}

} // namespace corvella
