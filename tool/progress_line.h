/// \file
/// The line on the terminal that shows a person what the exchange is doing.
#pragma once

#include <cstddef>
#include <string>

namespace corvella {

/// What the line shows of an exchange.
struct progress_facts {
    std::string peer;          ///< the host to connect to; "" if nothing is connected to
    std::size_t body_size;     ///< bytes of the request's body
    const char *const *header; ///< where the reply's header is stored before its body; may be null
};

/// Shows the line on standard error while the exchange runs: to whom it connects, what is sent, how
/// long the wait is, what is received. Shows it only while standard error is a terminal with this
/// program in the foreground. Nothing of it is longer than the terminal is wide.
void begin_progress_line(const progress_facts &facts);

/// Erases the line and shows no more. A second call does nothing.
void end_progress_line();

/// Erases the line. May be called by a signal handler, which then ends the program.
void erase_progress_line_in_handler();

/// Erases what the line shows of the connecting.
void show_connected();

/// Shows how much of the reply's body has come, at most ten times a second. Does nothing unless the
/// line was begun.
void show_received(std::size_t received);

} // namespace corvella
