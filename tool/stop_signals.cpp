#include "tool/stop_signals.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <ctime>
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

/// Once connected, the timer expires this often: it interrupts the waits of the web client, which
/// then check the flag and call the idle callback.
constexpr suseconds_t tick_microseconds = 100000;
constexpr double ticks_per_second = 10.0;
/// Ticks from the request to stop until the handler ends the program: half a second.
constexpr int most_overdue_ticks = 6;

// SIGINT and SIGALRM as they are outside an exchange.
struct sigaction usual_interrupt = {};
struct sigaction usual_alarm = {};

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t connected = 0;
volatile std::sig_atomic_t limited = 0;
volatile std::sig_atomic_t time_is_over = 0;
/// Once connected: ticks until the limit, and the second in which it is over even if ticks were
/// lost, as those of a suspended program are.
volatile std::sig_atomic_t ticks_left = 0;
time_t latest_second = 0;
volatile std::sig_atomic_t overdue_ticks = 0;

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

/// Ends the program as an uncaught SIGINT does.
void die_of_interrupt()
{
    erase_progress_line_in_handler();
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_UNBLOCK, &interrupt, nullptr);
    raise(SIGINT);
}

void handle_interrupt(int)
{
    const int error = errno;
    if (interrupted != 0) {
        die_of_interrupt();
    }
    interrupted = 1;
    web_cancel_requested = 1;
    errno = error;
}

void count_tick()
{
    if (limited != 0) {
        ticks_left = ticks_left - 1;
        if (ticks_left <= 0 || time(nullptr) >= latest_second) {
            time_is_over = 1;
        }
    }
    if (time_is_over != 0 || interrupted != 0) {
        // Again with each tick: a signal between two system calls wakes no wait.
        web_cancel_requested = 1;
        overdue_ticks = overdue_ticks + 1;
    }
}

void handle_alarm(int)
{
    const int error = errno;
    if (connected != 0) {
        count_tick();
    }
    if (overdue_ticks >= most_overdue_ticks || (connected == 0 && limited != 0)) {
        end_program();
    }
    errno = error;
}

/// Neither handler interrupts the other: both may erase the progress line.
void catch_signal(int number, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaddset(&action.sa_mask, SIGINT);
    sigaddset(&action.sa_mask, SIGALRM);
    sigaction(number, &action, nullptr);
}

void catch_interrupt()
{
    sigaction(SIGINT, nullptr, &usual_interrupt);
    if (usual_interrupt.sa_handler != SIG_IGN) {
        catch_signal(SIGINT, handle_interrupt, 0); // no restart: the first is to end a wait
    }
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

void catch_alarm()
{
    sigaction(SIGALRM, nullptr, &usual_alarm);
    // An interrupted recv() would end a body as if it were complete. select() returns all the same.
    catch_signal(SIGALRM, handle_alarm, SA_RESTART);
    unblock_alarm();
}

/// Counts the rest of the limit in ticks. \return the time until the first one
timeval count_ticks_left()
{
    constexpr double microseconds_per_second = 1e6;
    itimerval timer = {};
    getitimer(ITIMER_REAL, &timer);
    const double rest = static_cast<double>(timer.it_value.tv_sec) +
                        static_cast<double>(timer.it_value.tv_usec) / microseconds_per_second;
    const double ticks = std::max(std::ceil(rest * ticks_per_second), 1.0);
    ticks_left = static_cast<std::sig_atomic_t>(ticks);
    latest_second = time(nullptr) + timer.it_value.tv_sec + 2;
    return timer_value(rest - (ticks - 1.0) / ticks_per_second);
}

} // namespace

void begin_stop_signals(const time_limit &limit, bool framed)
{
    interrupted = 0;
    connected = 0;
    limited = 0;
    time_is_over = 0;
    overdue_ticks = 0;
    limit_text.clear();
    words_of_interrupt = words_for(interrupt_text, framed);
    if (limit.seconds > 0.0) {
        limit_text = std::string("Timeout after ") + limit.text + " seconds";
        words_of_limit = words_for(limit_text.c_str(), framed);
    }
    catch_interrupt();
    catch_alarm();
    if (limit.seconds > 0.0) {
        limited = 1;
        itimerval timer = {};
        timer.it_value = timer_value(limit.seconds);
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
}

void expect_stop_at_flag()
{
    itimerval timer = {};
    timer.it_interval.tv_usec = tick_microseconds;
    timer.it_value = limited != 0 ? count_ticks_left() : timer.it_interval;
    connected = 1;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

bool stop_requested()
{
    return web_cancel_requested != 0;
}

stop_cause end_stop_signals()
{
    const itimerval none = {};
    setitimer(ITIMER_REAL, &none, nullptr);
    sigaction(SIGALRM, &usual_alarm, nullptr);
    sigaction(SIGINT, &usual_interrupt, nullptr);
    web_cancel_requested = 0;
    if (interrupted != 0) {
        return stop_cause::interrupt;
    }
    return time_is_over != 0 ? stop_cause::time_limit : stop_cause::none;
}

const char *time_limit_text()
{
    return limit_text.c_str();
}

} // namespace corvella
