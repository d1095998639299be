/// \file
/// Sending a request. Internal to the web client.
#pragma once

#include <string_view>

#include "web/wait.h"

namespace corvella {

/// What a request says; the texts are those of web_transaction().
struct request_parts {
    const char *host;
    const char *target;
    bool posts; ///< or gets
    const char *extra_headers;
    std::string_view body; ///< empty unless it posts
    const char *user;
    const char *password;
};

/// Sends the request in pieces on the socket of \p progress, which has just begun. A failure is not
/// reported but kept in \p progress: it shows when the reply is received. But a request that has
/// lost a piece is never completed: the pieces behind it cannot be sent. \return wait_result::ready
/// when the reply can be waited for; timed_out when the peer took nothing for
/// SILENCE_LIMIT_SECONDS, cancelled when the user asked for it while the system did not accept
/// everything at once. \throws std::bad_alloc when memory for the credentials is exhausted.
wait_result send_request(const request_parts &request, request_progress &progress);

} // namespace corvella
