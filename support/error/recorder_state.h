/// \file
/// What the time-stamp recorder keeps. Internal to the facility.
#pragma once

#include <cstdint>

struct recorder_state {
    double last_time;          ///< seconds since the epoch of the last record; 0 before the first
    std::uint32_t burst_count; ///< records without a gap of more than 60 seconds
};

/// The state, for the recorder and its tests.
recorder_state &time_stamp_recorder();
