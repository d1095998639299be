/// \file
/// A form request to a URL.
#pragma once

#include "web/form.h"

#include <cstdint>

/// Posts (or gets) a form: clears the last error text, splits \p url, builds the form's body and
/// runs web_transaction() with it.
///
/// The scheme is what stands before the first ":" ("HTTP" when there is none), the host the longest
/// run of ASCII letters, digits, "-", "." and ":" behind an optional "//", in upper case, cut at
/// its first ":"; the port is the decimal number behind that, one beyond 32
/// bits taken as the nearest one inside, cut to 16 bits (0 when it is none), or 80. The request
/// target is the whole URL as given. The URL may have any length; it must not come from somebody
/// else unchecked, see web_transaction().
///
/// The form's header lines are deliberately sent with a GET too, whose body is not.
///
/// \return what web_transaction() returns. \p header_out and \p body_out are filled as there, and
/// given back with free().
/// \throws std::bad_alloc when memory is exhausted.
int web_request(const char *url, const char *method, int field_count, const FormField *fields,
                char **header_out, char **body_out, const char *proxy_host,
                std::uint16_t proxy_port, const char *user, const char *password);
