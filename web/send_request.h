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

/// Sends the request in pieces on the socket of \p progress, which has just begun. A failed send is
/// not reported but kept in \p progress: receiving the reply reports it. No piece is sent after a
/// failed one, so that the peer never gets a request with a gap.
/// \return wait_result::ready if the reply can be waited for; timed_out if the peer took nothing
/// for SILENCE_LIMIT_SECONDS; cancelled if the user cancelled while a send waited.
/// \throws std::bad_alloc when memory for the credentials is exhausted.
wait_result send_request(const request_parts &request, request_progress &progress);

} // namespace corvella
