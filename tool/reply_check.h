/// \file
/// Whether a reply is what the user asked for, and whole.
#pragma once

#include <cstddef>
#include <string>

namespace corvella {

/// What is wrong with a reply, in words for the user; "" where nothing is.
struct reply_faults {
    std::string status; ///< it reports a failure, or is no reply of the web
    std::string part;   ///< only a part of it came
};

/// Checks a reply that the web client handed out. Call it first after the request: an error that
/// the web client kept while it received the header is one of the faults.
///
/// The reply came in part if its header was broken off, if it is shorter than its Content-Length,
/// or if NUL bytes discarded some of it. The status of a header that was broken off is not checked.
/// Statuses 204 and 304 have no body, whatever they announce.
/// \param received bytes of the body that came, see set_web_progress_callback()
reply_faults check_reply(const char *header, const char *body, std::size_t received);

/// Whether the header was broken off, or a NUL byte ends its string. The string of a complete
/// header ends in the line feed of its last line, or in that and the carriage return of the empty
/// line. If it ends in CR LF and no body follows, the empty line is missing. \param received bytes
/// of the body that came
bool header_is_broken_off(const std::string &header, std::size_t received);

/// \return the status of a reply; 0 if its header has none.
int reply_status(const char *header);

/// Whether the reply's body is in chunked coding (RFC 9112 section 7.1), which is not decoded.
bool is_chunked(const char *header);

} // namespace corvella
