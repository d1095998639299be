/// \file
/// The web client's process-wide state, for its own functions. Callers set it through web_error.h
/// and transaction.h. Internal to the web client.
#pragma once

#include <cstddef>

#include "web/transaction.h"

namespace corvella {

/// Discards the last error text.
void clear_web_error();

/// Calls the idle callback, if there is one.
void notify_idle();

/// Calls the step callback, if there is one.
void notify_step(WebStep step);

/// Calls the progress callback, if there is one.
void notify_received(std::size_t received);

/// Calls the send callback, if there is one.
void notify_sent(std::size_t sent);

} // namespace corvella
