#include "tool/stop_signals.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <string>
#include <sys/time.h>
#include <unistd.h>

#include "support/error.h"
#include "tool/exit_status.h"
#include "tool/progress_line.h"
#include "web/web.h"

namespace corvella {

namespace {

/// What the handler writes when it ends the program. Formed in advance: formatting is not safe in a
/// signal handler.
struct last_words {
    std::string err;
    std::string out;
};

/// After the first expiry the timer expires again this often, so that a signal between two system
/// calls is not missed.
constexpr suseconds_t repeat_microseconds = 100000;
/// Expiries until the handler ends the program: half a second after the first.
constexpr int most_expiries = 6;

// SIGINT and SIGALRM as they are outside an exchange.
struct sigaction usual_interrupt = {};
struct sigaction usual_alarm = {};

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t expiries = 0;
volatile std::sig_atomic_t connected = 0;

std::string limit_text;
last_words words_of_limit;
last_words words_of_interrupt;

constexpr char interrupt_text[] = "User canceled web transaction";

/// The same bytes that report_message() would write.
last_words words_for(const char *text, bool framed)
{
    constexpr int overhead = 20; // label and bell, see format_message_line()
    std::string line(std::strlen(text) + overhead + 1, '\0');
    line.resize(static_cast<std::size_t>(
        format_message_line(9, text, line.data(), static_cast<int>(line.size()))));
    const std::string first_copy = line.substr(0, line.find('\a')) + "\n";
    if (framed) {
        return {first_copy, "CORVELLATEST" + line + "\nENDCORVELLATEST\n"};
    }
    return {first_copy + line + "\n", ""};
}

/// Safe in a signal handler.
void write_whole(int descriptor, const std::string &text)
{
    const char *bytes = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t written = write(descriptor, bytes, left);
        if (written < 0 && errno != EINTR) {
            return;
        }
        const std::size_t count = written > 0 ? static_cast<std::size_t>(written) : 0;
        bytes += count;
        left -= count;
    }
}

/// Safe in a signal handler.
[[noreturn]] void end_program()
{
    const bool cancelled = interrupted != 0;
    const last_words &words = cancelled ? words_of_interrupt : words_of_limit;
    erase_progress_line_in_handler();
    write_whole(STDERR_FILENO, words.err);
    write_whole(STDOUT_FILENO, words.out);
    _exit(cancelled ? EXIT_CANCELLED : EXIT_TIMED_OUT);
}

void handle_interrupt(int)
{
    interrupted = 1;
    web_cancel_requested = 1;
}

void handle_alarm(int)
{
    const int error = errno;
    expiries = expiries + 1;
    web_cancel_requested = 1;
    if (connected == 0 || expiries >= most_expiries) {
        end_program();
    }
    errno = error;
}

void catch_interrupt()
{
    sigaction(SIGINT, nullptr, &usual_interrupt);
    if (usual_interrupt.sa_handler == SIG_IGN) {
        return; // the parent process ignores SIGINT
    }
    struct sigaction action = {};
    action.sa_handler = handle_interrupt;
    // The second one finds the default again. No restart: the first is to end a wait.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
}

void unblock_alarm()
{
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarm, nullptr);
}

/// At least a microsecond, because 0 would stop the timer, and no more than every system accepts.
timeval timer_value(double seconds)
{
    constexpr double most_seconds = 1e8;
    constexpr double microseconds_per_second = 1e6;
    const double bounded = std::min(seconds, most_seconds);
    const double whole = std::floor(bounded);
    const auto part = static_cast<suseconds_t>((bounded - whole) * microseconds_per_second);
    timeval value = {};
    value.tv_sec = static_cast<time_t>(whole);
    value.tv_usec = value.tv_sec == 0 ? std::max<suseconds_t>(part, 1) : part;
    return value;
}

void start_limit(const time_limit &limit)
{
    struct sigaction action = {};
    action.sa_handler = handle_alarm;
    // An interrupted recv() would end a body as if it were complete. select() returns all the same.
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, &usual_alarm);
    unblock_alarm();
    itimerval timer = {};
    timer.it_value = timer_value(limit.seconds);
    timer.it_interval.tv_usec = repeat_microseconds;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

void stop_limit()
{
    const itimerval none = {};
    setitimer(ITIMER_REAL, &none, nullptr);
    sigaction(SIGALRM, &usual_alarm, nullptr);
}

} // namespace

void begin_stop_signals(const time_limit &limit, bool framed)
{
    interrupted = 0;
    expiries = 0;
    connected = 0;
    catch_interrupt();
    limit_text.clear();
    if (limit.seconds > 0.0) {
        limit_text = std::string("Timeout after ") + limit.text + " seconds";
        words_of_limit = words_for(limit_text.c_str(), framed);
        words_of_interrupt = words_for(interrupt_text, framed);
        start_limit(limit);
    }
}

void expect_stop_at_flag()
{
    connected = 1;
}

bool stop_requested()
{
    return web_cancel_requested != 0;
}

stop_cause end_stop_signals()
{
    if (!limit_text.empty()) {
        stop_limit();
    }
    sigaction(SIGINT, &usual_interrupt, nullptr);
    web_cancel_requested = 0;
    if (interrupted != 0) {
        return stop_cause::interrupt;
    }
    return expiries > 0 ? stop_cause::time_limit : stop_cause::none;
}

const char *time_limit_text()
{
    return limit_text.c_str();
}

} // namespace corvella
