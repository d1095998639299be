/// \file
/// Requests to a URL: of a form, or of a body of the caller's.
#pragma once

#include <cstdint>
#include <string_view>

#include "web/form.h"

#pragma GCC visibility push(default)

/// Posts (or gets) a form: clears the last error text, splits \p url, builds the form's body and
/// runs web_transaction() with it.
///
/// The scheme is what stands before the first ":", or "HTTP" when there is none. The host is the
/// longest run of ASCII letters, digits, "-", "." and ":" behind an optional "//", in upper case,
/// cut at its first ":". The port is the decimal number behind that, one beyond 32 bits taken as
/// the nearest one inside, cut to 16 bits, and 0 when it is none; without a ":" it is 80. The
/// request target is the whole URL as given. The URL may have any length; it must not come from
/// somebody else unchecked, see web_transaction(), which also tells of \p method.
///
/// The form's header lines are deliberately sent with a GET too, whose body is not.
///
/// \p fields may be null when \p field_count is below 1.
///
/// \return what web_transaction() returns. \p header_out and \p body_out are filled as there, and
/// given back with free().
/// \throws std::bad_alloc when memory is exhausted.
int web_request(const char *url, const char *method, int field_count, const FormField *fields,
                char **header_out, char **body_out, const char *proxy_host,
                std::uint16_t proxy_port, const char *user, const char *password);

/// Posts a body of the caller's: clears the last error text, splits \p url as web_request() does,
/// and runs web_transaction() with the header lines "Content-Type: \p content_type" and
/// "Content-Length: ", the number of bytes of \p body.
///
/// \p content_type is sent unchanged; the caller refuses line ends in it. \p body is sent whole,
/// including NUL bytes.
///
/// \return what web_transaction() returns. \p header_out and \p body_out are filled as there, and
/// released with free().
/// \throws std::bad_alloc as web_transaction() does.
int web_post(const char *url, const char *content_type, std::string_view body, char **header_out,
             char **body_out, const char *proxy_host, std::uint16_t proxy_port, const char *user,
             const char *password);

#pragma GCC visibility pop
