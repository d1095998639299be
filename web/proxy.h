/// \file
/// Which HTTP proxy the requests of a run use.
#pragma once

#include <cstddef>
#include <cstdint>

#pragma GCC visibility push(default)

/// The proxy and its credentials. A zeroed record is a direct connection. A caller that passes the
/// fields to a request passes null for an empty string.
struct ProxySettings {
    char proxy_host[256];    ///< "" for none
    std::int32_t proxy_port; ///< 0 for none
    char user[256];          ///< "" for none
    char password[256];      ///< "" for none
};

/// Reads the HTTP proxy of the system's network settings (Mac OS X; other systems have none).
///
/// A proxy counts only if it is enabled, its name is ASCII and fits, and its port is given.
///
/// \param host_buffer receives the name, or "" if there is no proxy
/// \param buffer_size the size of \p host_buffer in bytes; 0 writes nothing and finds no proxy
/// \param port_out receives the port, or 0 if there is no proxy
/// \return whether there is a proxy.
bool system_http_proxy(char *host_buffer, std::size_t buffer_size, std::int32_t *port_out);

/// Fills the settings from the command line, or else from the system.
///
/// Each option is its argument, or null if it was not given. Strings of more than 255 characters
/// are truncated.
///
/// \param settings receives the proxy and its credentials; must not be used after a failure
/// \param proxy_option "host:port", split at the first ":". The port is a decimal number, which
///     saturates to 32 bits; the caller checks that it is 1 to 65535.
/// \param user_option,password_option the credentials. On purpose: ignored if \p proxy_option is
///     null.
/// \return 0, or -1 if \p proxy_option has no ":" or its port reads as 0.
int fill_proxy_settings(ProxySettings *settings, const char *proxy_option, const char *user_option,
                        const char *password_option);

#pragma GCC visibility pop
