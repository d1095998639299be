/// \file
/// The time-stamp recorder, which receives each reported message and raw string.
#pragma once

#pragma GCC visibility push(default)

/// Formats a time-stamped record of one line, and counts it.
///
/// The record is the local time in the 24-character form of ctime (POSIX), ": ", the text and a
/// newline. A year that ctime cannot write gives question marks for the time.
///
/// On purpose: the record is not written anywhere. The recorder keeps only the time of the last
/// record, and the number of records since the last gap of more than 60 seconds.
///
/// \param text truncated to 4056 characters; trailing carriage returns and line feeds are dropped
/// \return the length of the record without its newline.
int record_timestamped_line(const char *text);

#pragma GCC visibility pop
