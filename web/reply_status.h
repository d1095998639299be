/// \file
/// The check of a reply's status line (RFC 1945 section 6.1).
#pragma once

#pragma GCC visibility push(default)

/// Accepts a reply whose status is 200 to 299.
///
/// The first "HTTP/" anywhere in the header counts, and a reason phrase is required. On purpose:
/// blanks include line ends, so that the next header line counts as a missing reason.
///
/// \param header a reply's header as web_transaction() stores it; null counts as ""
/// \return 0, or -1 with the reason in web_last_error().
/// \throws std::bad_alloc if memory for the reason is exhausted.
int check_reply_status(const char *header);

#pragma GCC visibility pop
