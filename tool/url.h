/// \file
/// The URLs that the program is given.
#pragma once

#include <string>

namespace corvella {

/// What keeps a URL from being requested: bytes that would divide the request line or its header, a
/// host other than the one that the request would go to, or a port that is none.
/// \return a sentence about it; null for a URL that may be requested. One of another protocol may:
/// the request itself says that it fails.
const char *url_error(const char *url);

/// Returns the URL as it is requested: a fragment is the client's own (RFC 3986). Leaves a URL with
/// blanks or control bytes whole, for url_error().
std::string without_fragment(const char *url);

/// The greatest port that there is (RFC 9293).
constexpr int greatest_port = 65535;

/// \return the host of a URL that url_error() lets pass, in capitals as in the request; ""
/// for another protocol.
std::string host_of_url(const char *url);

/// \return the same host as the URL spells it.
std::string host_as_typed(const char *url);

} // namespace corvella
