/// \file
/// What the commands that talk to the web have in common.
#pragma once

#include <cstdint>

#include "tool/command_line.h"
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
/// program, the timer runs, and unless the command line is against it a line tells of the wait.
void begin_exchange(const command_line &line);

/// Ends what begin_exchange() began: wipes the line and the password, reports a failure.
/// \param result what the web operation returned
/// \return the exit status that says the same.
exit_status end_exchange(int result, command_line &line);
