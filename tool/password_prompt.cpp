#include "tool/password_prompt.h"

#include <cerrno>
#include <csignal>
#include <string_view>
#include <termios.h>
#include <unistd.h>

namespace corvella {

namespace {

constexpr int caught_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP};
constexpr int caught_count = sizeof caught_signals / sizeof caught_signals[0];

termios usual_terminal;
struct sigaction usual_actions[caught_count];

/// Safe in a signal handler. A prompt that cannot be written is ignored.
void show(std::string_view text)
{
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    static_cast<void>(written);
}

void ask()
{
    termios silent = usual_terminal;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK | ECHONL);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    show("Password: ");
}

void catch_signal(int signal);

/// Handles \p signal as usual, with the echo restored. Only a stopped program returns.
void restore_and_repeat(int signal)
{
    const int error = errno;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &usual_terminal);
    show("\n");
    kill(getpid(), signal); // reset to the default by SA_RESETHAND, not blocked by SA_NODEFER
    catch_signal(signal);
    ask();
    errno = error;
}

void catch_signal(int signal)
{
    struct sigaction action = {};
    action.sa_handler = restore_and_repeat;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER | SA_RESTART);
    sigemptyset(&action.sa_mask);
    for (const int other : caught_signals) {
        if (other != signal) {
            sigaddset(&action.sa_mask, other);
        }
    }
    sigaction(signal, &action, nullptr);
}

} // namespace

bool begin_password_prompt()
{
    if (tcgetattr(STDIN_FILENO, &usual_terminal) != 0) {
        return false;
    }
    for (int i = 0; i < caught_count; ++i) {
        sigaction(caught_signals[i], nullptr, &usual_actions[i]);
        if (usual_actions[i].sa_handler != SIG_IGN) {
            catch_signal(caught_signals[i]);
        }
    }
    ask();
    return true;
}

void end_password_prompt()
{
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &usual_terminal);
    show("\n");
    for (int i = 0; i < caught_count; ++i) {
        sigaction(caught_signals[i], &usual_actions[i], nullptr);
    }
}

} // namespace corvella
