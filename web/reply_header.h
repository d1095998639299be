/// \file
/// The header lines of a reply (RFC 1945 section 4.2), and the check of its Content-Length.
#pragma once

#pragma GCC visibility push(default)

/// Finds a header line and copies its value.
///
/// Reads the lines after the first one, which is the status line. A line ends at its line feed or
/// at the end of the text; carriage returns in front of that belong to the line end. The name is
/// everything in front of the line's first colon, compared in full, ASCII letters in either case;
/// a line without a colon is not a header line. Blanks and tabs around the value are removed. Only
/// the first line of that name counts, and a folded line is not joined.
///
/// \param header a reply's header as web_transaction() stores it; null counts as ""
/// \param name without its colon
/// \param buffer receives the value and a NUL; may be null if \p size is below 1
/// \param size of \p buffer: at most \p size - 1 bytes of the value are copied, and nothing is
///     written below 1
/// \return \p buffer if there is such a line, even if its value is empty or truncated; otherwise
/// null, with \p buffer unchanged.
const char *find_reply_header(const char *header, const char *name, char *buffer, int size);

/// Compares the length of a reply's body with its Content-Length.
///
/// The reply is complete if the body has at least the announced bytes, if there is no
/// Content-Length line, or if its value is not made of ASCII digits only. Bytes that a NUL
/// discarded are missing from the body. The number saturates to 63 bits. The status
/// is not checked: the caller decides whether a reply such as 204 or 304 has a body at all.
///
/// \param header,body the strings of web_transaction(); null counts as ""
/// \return 0 if the reply is complete, otherwise -1 with the reason in web_last_error().
/// \throws std::bad_alloc if memory for the reason is exhausted.
int check_reply_complete(const char *header, const char *body);

#pragma GCC visibility pop
