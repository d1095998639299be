/// \file
/// What the files of the facility share. Internal to it.
#pragma once

#include <cstdint>

namespace corvella {

/// Calls the output hook in force. \return its result.
int call_output_hook(const char *text, const char *tag);

/// Calls the message hook in force. \return its result.
int call_message_hook(int level, const char *text);

/// Prints \p text as print_indented("%s", text) does. \return the result of the flush.
int print_text(const char *text);

/// What record_timestamped_line() keeps between calls.
struct recorder_state {
    double last_time;          ///< seconds since the epoch of the last record; 0 before the first
    std::uint32_t burst_count; ///< records without a gap of more than 60 seconds
};

extern recorder_state recorder;

} // namespace corvella
