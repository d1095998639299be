/// \file
/// What differs by platform when a request is sent: not being killed by SIGPIPE, gathering the
/// pieces of a request into few segments, and how much of it the peer has taken. Internal to the
/// web client.
#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace corvella {

/// Prepares a new socket: from here on a peer that is gone raises no signal.
void prepare_socket(int socket);

/// Prepares a connected socket for send_piece().
void prepare_sends(int socket);

/// One send of up to \p length bytes; \p more says that further pieces follow at once, so that the
/// system may hold these back for a fuller segment.
/// \return as send (POSIX) does; a peer that is gone gives EPIPE, never a signal.
ssize_t send_piece(int socket, const char *bytes, std::size_t length, bool more);

/// \return how many bytes that were sent on \p socket the peer has not acknowledged, or -1 if the
/// system cannot tell.
std::int64_t unsent_bytes(int socket);

} // namespace corvella
