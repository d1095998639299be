/// \file
/// What the commands that talk to the web have in common.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tool/command_line.h"
#include "tool/exit_status.h"
#include "tool/progress_line.h"
#include "web/web.h"

namespace corvella {

/// The proxy arguments of a request, as every web operation takes them.
struct proxy_arguments {
    const char *host;
    std::uint16_t port;
    const char *user;
    const char *password;
};

/// \return the settings' texts, null for those that are empty. They point into \p settings.
proxy_arguments proxy_arguments_of(const ProxySettings &settings);

/// Thrown by the callback of the body to end an exchange whose server keeps sending.
struct exchange_stopped {};

/// Prepares the user's side of an exchange: the signals that stop it, its timer, and the progress
/// line unless the command line forbids it.
void begin_exchange(const command_line &line, const progress_facts &facts);

/// Ends what begin_exchange() began: erases the progress line, stops the timer, wipes the password.
/// \param result what the web operation returned
/// \return the web_result that the user is told of; the error text is set to match. An interrupt
/// counts whatever came. The end of -max-time does not: what came complete all the same is
/// complete.
int end_exchange(int result, command_line &line);

/// Runs a web operation as an exchange. \param operation called once; returns a web_result
/// \return as end_exchange()
template <typename Operation>
int run_exchange(command_line &line, const progress_facts &facts, Operation operation)
{
    int result = WEB_FAILED;
    begin_exchange(line, facts);
    try {
        result = operation();
    } catch (const exchange_stopped &) {
        result = WEB_CANCELLED;
    } catch (...) {
        end_exchange(result, line);
        throw;
    }
    return end_exchange(result, line);
}

/// \return how many bytes of the reply's body the last exchange received, those that a NUL
/// discarded included.
std::size_t received_body_bytes();

/// Reports the failure of an exchange, with the last error text as the reason.
/// \return the exit status of \p result; a success is not reported.
exit_status report_exchange(int result);

} // namespace corvella
