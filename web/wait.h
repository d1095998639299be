/// \file
/// Waiting for the server. Internal to the web client.
#pragma once

#include <cstdint>
#include <sys/time.h>

/// Descriptors that the wait can hold; one of this number or above must not reach it.
constexpr int WAIT_DESCRIPTORS = 1024;

/// Silence after which a peer is given up.
constexpr int SILENCE_LIMIT_SECONDS = 10;

enum class wait_result { ready, timed_out, cancelled };

/// Waits until \p socket can be read, in slices of \p slice, and begins none once
/// SILENCE_LIMIT_SECONDS are over: a wait that signals interrupt may last up to one slice longer.
/// After each slice without news, a requested cancellation is honoured or the idle callback called.
wait_result wait_readable(int socket, timeval slice);

/// Sets the error text of a wait that was in vain. \return the web_result that says the same;
/// WEB_DONE, and no text, for wait_result::ready. A cancellation is honoured by this: the request
/// is taken back.
int finish_wait(wait_result result);

/// \return the millisecond counter SILENCE_LIMIT_SECONDS from now.
std::uint32_t silence_deadline();

/// Whether the millisecond counter has reached \p deadline. Deliberately the two are compared as
/// signed numbers, not by their difference: where the counter passes from its greatest to its least
/// value, a deadline behind that passage has passed at once, and one that was due just before it
/// and not looked at in time has not.
bool deadline_passed(std::uint32_t deadline);
