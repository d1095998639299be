/// \file
/// What -verbose tells of a request, on standard error.
#pragma once

#include <vector>

#include "tool/exchange.h"

/// Shows the request as it will be sent, with stars in place of credentials; nothing of one that
/// will not be, because its protocol is another.
void show_request_details(const char *url, const char *method, const std::vector<FormField> &fields,
                          const proxy_arguments &proxy);

/// Shows how long the exchange took since start_timer(), in the pieces of begin_timing() and in
/// all, the header of the reply, and how much came.
/// \param header null where none came, and so with \p body
void show_reply_details(const char *header, const char *body);
