/// \file
/// Receiving a reply. Internal to the web client.
#pragma once

#include "web/request_progress.h"

namespace corvella {

/// Receives the reply to \p request from its socket: its header byte by byte, so that nothing
/// behind the empty line is taken from the socket early, then its body in chunks, until the peer
/// closes. \return a web_result, with the error text set when it is not WEB_DONE; \p header_out and
/// \p body_out are those of web_transaction().
/// \throws std::bad_alloc when memory is exhausted.
int receive_reply(request_progress &request, char **header_out, char **body_out);

} // namespace corvella
