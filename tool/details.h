/// \file
/// What is reported of a request beside its result: by -verbose on standard error, in an automated
/// run in frames.
#pragma once

#include <string>
#include <string_view>

#include "tool/exchange.h"

namespace corvella {

/// A request as it is sent; see web_transaction().
struct request_details {
    const char *url;
    const char *method;
    std::string header_lines; ///< those that describe the body
    std::string_view body;    ///< of a POST
    bool is_form;             ///< whether the body is a form
};

/// Shows the request on standard error as it will be sent; nothing of one that will not be sent
/// because its protocol is not HTTP. Stars replace the credentials, and within the body the
/// password and the values of form fields whose names look like those of secrets. Of the body only
/// the first 4096 bytes are shown, without control characters.
void show_request_details(const request_details &request, const proxy_arguments &proxy);

/// Shows on standard error how long the exchange and its steps took, the header of the reply, and
/// how much came.
/// \param header null if none came; \p body too
void show_reply_details(const char *header, const char *body);

/// Prints the same facts, with the status in place of the header, as results named \p tag.
void print_reply_details(const char *tag, const char *header, const char *body);

} // namespace corvella
