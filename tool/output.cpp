#include "tool/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "support/error.h"

namespace {

bool output_is_framed = false;
bool some_results_are_lost = false;

void report_lost_output()
{
    report_message(9, "Write of standard output failed: %s", std::strerror(errno));
}

} // namespace

void say_result(const char *tag, const std::string &text)
{
    if (output_is_framed) {
        write_raw_message(text.c_str(), tag);
    } else {
        set_print_stream(stdout);
        print_indented("%s\n", text.c_str());
        set_print_stream(nullptr);
    }
    if (std::ferror(stdout) != 0 && !some_results_are_lost) {
        report_lost_output();
        some_results_are_lost = true;
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
    set_message_hook(test_message_hook);
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
