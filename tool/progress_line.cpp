#include "tool/progress_line.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/terminal.h"
#include "web/web.h"

namespace corvella {

namespace {

enum class phase { none, connecting, sending, receiving };

struct line_state {
    progress_facts facts;
    phase shown;               ///< none unless the line was begun
    int waited_seconds;        ///< as shown; 0 if not shown
    std::uint32_t shown_since; ///< in milliseconds
    std::uint32_t last_sent;   ///< when show_sent() was called last, in milliseconds
    std::size_t received;      ///< bytes of the body so far
    std::size_t received_shown;
    int received_seconds; ///< as shown with received_shown
};

const line_state no_line = {{"", 0, nullptr}, phase::none, 0, 0, 0, 0, 0, 0};
line_state state = no_line;

/// Columns that the line fills on the terminal.
std::size_t filled_columns = 0;
/// Columns to erase: those of the line and of each "^C" that the terminal echoes after it, within
/// the terminal's width. The signal handler reads it too.
volatile std::sig_atomic_t erased_columns = 0;

/// Checked each time: a program may be sent to the background while it waits.
bool has_a_watcher()
{
    return isatty(STDERR_FILENO) != 0 && tcgetpgrp(STDERR_FILENO) == getpgrp();
}

/// One column less than the terminal has: a full line would move the cursor to the next one.
std::size_t usable_columns()
{
    winsize window = {};
    int columns = terminal_columns(STDERR_FILENO);
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) {
        columns = std::min<int>(columns, window.ws_col);
    }
    return static_cast<std::size_t>(columns) - 1;
}

void draw(std::string text)
{
    if (!has_a_watcher()) {
        return;
    }
    constexpr std::size_t echo_columns = 4; // "^C^C"
    const std::size_t columns = usable_columns();
    text.resize(std::min(text.size(), columns));
    // The cursor never moves back, so that an echo is always within the columns to erase.
    text.resize(std::max(text.size(), std::min(filled_columns, columns)), ' ');
    filled_columns = text.size();
    erased_columns =
        static_cast<std::sig_atomic_t>(std::min(filled_columns + echo_columns, columns));
    print_indented("\r%s", text.c_str());
}

void erase()
{
    if (erased_columns > 0 && has_a_watcher()) {
        print_indented("\r%*s\r", static_cast<int>(erased_columns), "");
    }
    filled_columns = 0;
    erased_columns = 0;
}

/// Safe in a signal handler.
void write_byte(char byte)
{
    (void)!write(STDERR_FILENO, &byte, 1);
}

int seconds_so_far()
{
    // Bounded whatever the clock is set to.
    return static_cast<int>(clamp_float(elapsed_time(), 0.0f, 9999.0f));
}

/// Whether a line of \p shown is due: at once where it is the first, else every 100 ms.
bool is_due(phase shown)
{
    constexpr std::uint32_t interval = 100;
    const std::uint32_t now = current_time_milliseconds();
    if (state.shown == shown && now - state.shown_since < interval) {
        return false;
    }
    state.shown = shown;
    state.shown_since = now;
    return true;
}

/// Shows how many bytes are done, and their share where \p total is known.
void draw_bytes(const char *verb, std::size_t done, std::uint64_t total)
{
    std::string text = std::string(verb) + " " + std::to_string(done);
    if (total > 0) {
        const double share = 100.0 * static_cast<double>(done) / static_cast<double>(total);
        text += " of " + std::to_string(total) + " bytes (" +
                std::to_string(static_cast<int>(std::min(share, 100.0))) + "%)";
    } else {
        text += " bytes";
    }
    draw(text + ", " + std::to_string(seconds_so_far()) + " s");
}

/// The reply's Content-Length; 0 if it has none, or an odd one.
std::uint64_t announced_length()
{
    constexpr std::size_t most_digits = 18; // fewer than 64 bits hold
    char value[most_digits + 2];
    if (state.facts.header == nullptr || *state.facts.header == nullptr ||
        find_reply_header(*state.facts.header, "Content-Length", value, sizeof value) == nullptr) {
        return 0;
    }
    const std::size_t length = std::strlen(value);
    const bool is_number = length <= most_digits && std::strspn(value, "0123456789") == length;
    return is_number ? std::strtoull(value, nullptr, 10) : 0;
}

void show_sent(std::size_t taken, void *)
{
    state.last_sent = current_time_milliseconds();
    if (taken < state.facts.body_size && is_due(phase::sending)) {
        draw_bytes("Sent", taken, state.facts.body_size);
    }
}

/// The calls of show_sent() cease once the peer has taken the request.
bool is_sending()
{
    constexpr std::uint32_t patience = 300;
    return state.shown == phase::sending &&
           current_time_milliseconds() - state.last_sent < patience;
}

void draw_received()
{
    const int seconds = seconds_so_far();
    const bool is_news = state.received != state.received_shown || seconds > state.received_seconds;
    if (is_news && is_due(phase::receiving)) {
        state.received_shown = state.received;
        state.received_seconds = seconds;
        draw_bytes("Received", state.received, announced_length());
    }
}

void show_progress(void *)
{
    const int seconds = seconds_so_far();
    if (state.received > 0) {
        draw_received();
    } else if (!is_sending() && seconds > state.waited_seconds && has_a_watcher()) {
        state.waited_seconds = seconds;
        draw("Waiting for the web site: " + std::to_string(seconds) + " s");
    }
}

} // namespace

void begin_progress_line(const progress_facts &facts)
{
    state = no_line;
    state.facts = facts;
    state.shown = phase::connecting;
    set_web_idle_callback(show_progress, nullptr);
    set_web_send_callback(show_sent, nullptr);
    if (!facts.peer.empty()) {
        draw("Connecting to " + facts.peer + "...");
    }
}

void end_progress_line()
{
    set_web_idle_callback(nullptr, nullptr);
    set_web_send_callback(nullptr, nullptr);
    erase();
    state = no_line;
}

void erase_progress_line_in_handler()
{
    if (erased_columns == 0 || tcgetpgrp(STDERR_FILENO) != getpgrp()) {
        return;
    }
    write_byte('\r');
    for (std::sig_atomic_t i = 0; i < erased_columns; ++i) {
        write_byte(' ');
    }
    write_byte('\r');
}

void show_connected()
{
    erase();
}

void show_received(std::size_t received)
{
    if (state.shown != phase::none) {
        state.received = received;
        draw_received();
    }
}

} // namespace corvella
