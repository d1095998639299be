/// \file
/// Opening and closing the connection of a transaction. Internal to the web client.
#pragma once

#include <cstdint>

namespace corvella {

/// Creates a socket, which the caller closes. \return the descriptor, or -1 with the error text
/// set.
int create_web_socket();

/// Connects to \p name, which is \p host itself or its proxy. The error texts name \p host.
/// \return whether it worked; if not, the error text is set and the socket still open.
bool connect_web_socket(int socket, const char *host, const char *name, std::uint16_t port);

/// Closes \p *socket; in this form, as a deleter that runs on every way out of a transaction.
void close_web_socket(int *socket);

} // namespace corvella
