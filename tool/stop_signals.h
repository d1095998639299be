/// \file
/// The signals that stop an exchange: Ctrl-C and the timer of -max-time.
#pragma once

namespace corvella {

/// What asked the exchange to stop.
enum class stop_cause { none, interrupt, time_limit };

/// How long an exchange may take.
struct time_limit {
    double seconds;   ///< 0 for no limit
    const char *text; ///< the seconds as the user typed them
};

/// Handles the signals from now on. The first Ctrl-C and the end of the time both set
/// web_cancel_requested. A second Ctrl-C erases the progress line and ends the program by SIGINT.
/// An ignored SIGINT stays ignored.
///
/// Looking up a name and connecting do not read that flag: if the time ends there, the handler of
/// the timer writes the message and ends the program.
/// \param framed whether that message is framed on standard output too
void begin_stop_signals(const time_limit &limit, bool framed);

/// Tells the handler that the connection exists: from now on the exchange reads the flag. SIGALRM
/// now interrupts the waits every 100 ms, so that the flag is read and the idle callback called. If
/// the exchange still runs half a second after it was to stop, as with a header that keeps coming,
/// the handler writes the message and ends the program.
void expect_stop_at_flag();

/// Whether the exchange is to stop now.
bool stop_requested();

/// Stops the timer, restores both signals and clears the flag.
/// \return what asked the exchange to stop; of both, the interrupt.
stop_cause end_stop_signals();

/// The text that reports the end of the time.
/// \return a text that is valid until the next begin_stop_signals().
const char *time_limit_text();

} // namespace corvella
