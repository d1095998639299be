/// \file
/// The line that tells a person how long the wait for the web site has been.
#pragma once

/// Shows the line on standard error, at most once a second while the web client waits, and only as
/// long as standard error is a terminal with this program in the foreground.
void begin_waiting_line();

/// Wipes the line, if there is one, and shows no more. A second call does nothing.
void end_waiting_line();
