/// \file
/// How long each piece of an exchange took.
#pragma once

/// Begins to note when the web client's steps are done. The first piece begins at start_timer().
void begin_timing();

/// Ends that, and shows on standard error the seconds of each piece that was done.
/// \param body_came whether the body, of which no step tells, is done too: just now
void end_timing(bool body_came);
