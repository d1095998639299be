/// \file
/// The time-stamp recorder: a fixed point that every reported message and raw text passes.
#pragma once

#pragma GCC visibility push(default)

/// Composes the record of one line: the local time in the 24-character form of ctime (POSIX), ": ",
/// at most 4056 characters of \p text without its trailing carriage returns and line feeds, and a
/// newline. The record goes nowhere, deliberately; what is kept is the time of the last record and
/// the number of records that came without a gap of more than 60 seconds. A year that ctime cannot
/// write gives question marks for the time.
/// \return the length of the record without its newline.
int record_timestamped_line(const char *text);

#pragma GCC visibility pop
