/// \file
/// What the commands that talk to the web have in common.
#pragma once

#include <cstdint>

#include "tool/exit_status.h"
#include "web/web.h"

/// The proxy arguments of a request, as every web operation takes them.
struct proxy_arguments {
    const char *host;
    std::uint16_t port;
    const char *user;
    const char *password;
};

/// \return the settings' texts, null for those that are empty. They point into \p settings.
proxy_arguments proxy_arguments_of(const ProxySettings &settings);

/// Prepares the user's side of the next exchange: Ctrl-C asks it to stop, a second one ends the
/// program, and on a terminal a line on standard error tells how long the wait has been.
void begin_exchange();

/// Ends what begin_exchange() began: wipes the line and the password, reports a failure.
/// \param result what the web operation returned
/// \param settings those of the exchange
/// \return the exit status that says the same.
exit_status end_exchange(int result, ProxySettings &settings);
