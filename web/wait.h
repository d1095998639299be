/// \file
/// Waiting for the server. Internal to the web client.
#pragma once

#include <cstdint>
#include <sys/time.h>

#include "web/request_progress.h"

namespace corvella {

/// Descriptors that the wait can hold; one of this number or above must not reach it.
constexpr int WAIT_DESCRIPTORS = 1024;

/// Silence after which a peer is given up.
constexpr int SILENCE_LIMIT_SECONDS = 10;

/// The longest part of a wait without a check of the cancel request and the callbacks; within a
/// reply's body there is none as short, on purpose.
constexpr timeval short_slice = {0, 100000};

enum class wait_result { ready, timed_out, cancelled };

/// Waits until \p socket can be read, in slices of \p slice, and begins none once
/// SILENCE_LIMIT_SECONDS are over: a wait that signals interrupt may last up to one slice longer.
/// After each slice without news, a requested cancellation is honoured or the idle callback called.
/// \param request null, or the request whose reply is waited for: after each slice in which the
///     peer took some of it the time begins anew
wait_result wait_readable(int socket, timeval slice, request_progress *request);

/// Goes on after a send of which the system did not accept everything: honours a cancellation,
/// checks what the peer has taken, and calls the idle callback if \p accepted_some is false.
/// \return wait_result::ready if the rest is to be sent; timed_out if the peer took nothing for
/// SILENCE_LIMIT_SECONDS; cancelled.
wait_result continue_sending(request_progress &request, bool accepted_some);

/// Sets the error text of a failed wait, and none for wait_result::ready. Resets the cancel flag
/// after a cancellation. \return the web_result for \p result.
int report_wait_failure(wait_result result);

/// \return the millisecond counter SILENCE_LIMIT_SECONDS from now.
std::uint32_t silence_deadline();

/// Whether the millisecond counter has reached \p deadline. On purpose: the two are compared as
/// signed numbers, not by their difference. When the counter wraps from its greatest to its least
/// value, a deadline after the wrap has passed at once, and a deadline just before it that was not
/// checked in time has not passed.
bool deadline_passed(std::uint32_t deadline);

} // namespace corvella
