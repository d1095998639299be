/// \file
/// Signals during a transaction, but not during its connecting, which they may end.
#pragma once

#include <optional>

#include "tests/harness/signal_timer.h"
#include "web/web.h"

/// A SignalTimer that begins when the next transaction is connected.
class ConnectedSignalTimer {
public:
    ConnectedSignalTimer(void (*handler)(int), long first_ms, long interval_ms)
        : handler_(handler), first_ms_(first_ms), interval_ms_(interval_ms)
    {
        set_web_step_callback(begin, this);
    }
    ConnectedSignalTimer(const ConnectedSignalTimer &) = delete;
    ConnectedSignalTimer &operator=(const ConnectedSignalTimer &) = delete;
    ~ConnectedSignalTimer()
    {
        set_web_step_callback(nullptr, nullptr);
    }

private:
    static void begin(WebStep step, void *argument)
    {
        if (step == WEB_CONNECTED) {
            ConnectedSignalTimer &self = *static_cast<ConnectedSignalTimer *>(argument);
            self.timer_.emplace(self.handler_, self.first_ms_, self.interval_ms_);
        }
    }

    void (*handler_)(int);
    long first_ms_;
    long interval_ms_;
    std::optional<SignalTimer> timer_;
};
