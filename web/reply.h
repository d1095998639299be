/// \file
/// Receiving a reply. Internal to the web client.
#pragma once

#include "web/request_progress.h"

namespace corvella {

/// Receives the reply to \p request from its socket, until the peer closes. The header is received
/// byte by byte, so that no byte of the body is read early, and the body in chunks. \p header_out
/// and \p body_out are those of web_transaction().
/// \return a web_result; the error text is set unless it is WEB_DONE.
/// \throws std::bad_alloc when memory is exhausted.
int receive_reply(request_progress &request, char **header_out, char **body_out);

} // namespace corvella
