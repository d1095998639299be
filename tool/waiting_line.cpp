#include "tool/waiting_line.h"

#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"

namespace {

/// Seconds that the line shows; 0 while there is none.
int shown_seconds = 0;

/// Asked again each time: a program may be sent to the background while it waits.
bool has_a_watcher()
{
    return isatty(STDERR_FILENO) != 0 && tcgetpgrp(STDERR_FILENO) == getpgrp();
}

void show_waiting(void *)
{
    // Whatever somebody sets the clock to.
    const int seconds = static_cast<int>(clamp_float(elapsed_time(), 0.0f, 9999.0f));
    if (seconds > shown_seconds && has_a_watcher()) {
        shown_seconds = seconds;
        print_indented("\rWaiting for the web site: %d s", seconds);
    }
}

} // namespace

void begin_waiting_line()
{
    set_web_idle_callback(show_waiting, nullptr);
}

void end_waiting_line()
{
    set_web_idle_callback(nullptr, nullptr);
    if (shown_seconds > 0 && has_a_watcher()) {
        print_indented("\r%40s\r", "");
    }
    shown_seconds = 0;
}
