/// \file
/// Signals that interrupt what the test's thread waits for.
#pragma once

#include <csignal>
#include <sys/time.h>

/// A handler of SIGALRM without SA_RESTART, and a timer that raises the signal, for as long as this
/// lives.
class SignalTimer {
public:
    /// \param interval_ms 0: the signal comes once
    SignalTimer(void (*handler)(int), long first_ms, long interval_ms)
    {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigemptyset(&action.sa_mask);
        sigaction(SIGALRM, &action, &before_);
        const itimerval timer = {{0, interval_ms * 1000}, {0, first_ms * 1000}};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
    SignalTimer(const SignalTimer &) = delete;
    SignalTimer &operator=(const SignalTimer &) = delete;
    ~SignalTimer()
    {
        const itimerval off = {};
        setitimer(ITIMER_REAL, &off, nullptr);
        // What came before and was not delivered yet is dropped: the former action may end the
        // process.
        std::signal(SIGALRM, SIG_IGN);
        sigaction(SIGALRM, &before_, nullptr);
    }

private:
    struct sigaction before_;
};
