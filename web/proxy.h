/// \file
/// Which HTTP proxy the requests of a run use.
#pragma once

#include <cstddef>
#include <cstdint>

#pragma GCC visibility push(default)

/// The proxy and its credentials. All zero is a direct connection; whoever hands the record to a
/// request passes an empty text as null.
struct ProxySettings {
    char proxy_host[256];    ///< "" for none
    std::int32_t proxy_port; ///< 0 for none
    char user[256];          ///< "" for none
    char password[256];      ///< "" for none
};

/// Reads the HTTP proxy of the system's network settings (Mac OS X; other systems have none). A
/// proxy counts only when it is enabled, its name is ASCII and fits, and its port is given.
/// \param host_buffer receives the name, or "" when there is none
/// \param buffer_size of \p host_buffer, the NUL included; 0 writes nothing and finds nothing
/// \param port_out receives the port, or 0 when there is no proxy
/// \return whether there is a proxy.
bool system_http_proxy(char *host_buffer, std::size_t buffer_size, std::int32_t *port_out);

/// Fills the settings from the command line, or else from the system.
///
/// Each option is its argument, or null when it was not given. \p proxy_option is "host:port",
/// divided at the first ":". The port is read as a decimal number, one beyond 32 bits as the
/// nearest one inside; whether it is a port at all, 1 to 65535, is for the caller to check. The
/// other two count only together with it, deliberately. A text of more than 255 characters is cut.
///
/// \return 0; -1 when \p proxy_option has no ":" or its port reads as 0, and the settings are then
/// not to be used.
int fill_proxy_settings(ProxySettings *settings, const char *proxy_option, const char *user_option,
                        const char *password_option);

#pragma GCC visibility pop
