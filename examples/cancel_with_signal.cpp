// Waits for a page until Ctrl-C: cancel_with_signal URL
#include <csignal>
#include <cstdlib>

#include "support/error.h"
#include "web/web.h"

namespace {

void cancel(int)
{
    web_cancel_requested = 1;
}

void show_that_it_waits(void *dots)
{
    print_indented(++*static_cast<int *>(dots) % 10 == 0 ? ".\n" : ".");
}

} // namespace

int main(int count, char **vector)
{
    if (count != 2) {
        print_indented("Usage: cancel_with_signal URL\n");
        return 2;
    }
    int dots = 0;
    set_web_idle_callback(show_that_it_waits, &dots);
    std::signal(SIGINT, cancel);

    char *header = nullptr;
    char *body = nullptr;
    const int result =
        web_request(vector[1], "GET", 0, nullptr, &header, &body, nullptr, 0, nullptr, nullptr);
    if (result != WEB_DONE) {
        report_message(result == WEB_CANCELLED ? 3 : 9, "%s", web_last_error());
    }
    std::free(header);
    std::free(body);
    return result == WEB_CANCELLED ? 130 : result == WEB_DONE ? 0 : 1;
}
