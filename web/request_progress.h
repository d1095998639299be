/// \file
/// How much of a request the peer has taken. Internal to the web client.
#pragma once

#include <cstdint>

namespace corvella {

/// A request on its way. The peer has taken a byte when its system has acknowledged it, or, where
/// this system cannot tell, when this system has accepted it.
struct request_progress {
    int socket;
    std::uint64_t body_start = UINT64_MAX; ///< bytes in front of the body, once they are sent
    std::uint64_t accepted = 0;            ///< bytes that the system has accepted
    std::uint64_t taken = 0;               ///< bytes that the peer had taken at the last check
    bool checked = false;                  ///< whether there has been a check
    bool settled = false;                  ///< nothing that a check could find is left
    std::uint32_t checked_at = 0;          ///< the millisecond counter at the last check
    std::uint32_t reported_at = 0;         ///< the same at the last call of the send callback
    std::uint32_t deadline = 0;            ///< when a peer that takes nothing is given up
    int send_error = 0;                    ///< the errno of the first send that failed, or 0
};

/// Checks what the peer has taken, and calls the send callback if 100 ms have passed since the last
/// call or the first check. \p now is the millisecond counter.
/// \return whether the peer has taken more since the last check; false for the first one.
bool check_request_progress(request_progress &request, std::uint32_t now);

/// Does the same after the whole request has been accepted: once the peer has taken all of it, or
/// where the system cannot tell, nothing is checked any more.
bool check_remaining_request(request_progress &request, std::uint32_t now);

} // namespace corvella
