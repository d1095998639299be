/// \file
/// The error text of the web client's last failure.
#pragma once

#pragma GCC visibility push(default)

/// Replaces the last error text.
/// \param format a printf format, followed by its arguments, which may include web_last_error()
/// \throws std::bad_alloc if memory is exhausted; the earlier text is then kept.
[[gnu::format(printf, 1, 2)]] void set_web_error(const char *format, ...);

/// Returns the last error text.
/// \return the text, or "" if there is none. It belongs to the web client and is valid until the
/// next call of set_web_error() or of a function of the web client that may fail.
const char *web_last_error();

/// Formats errno as "code N: description" (strerror, POSIX), truncated to 1023 characters.
///
/// errno is read first, and only once.
///
/// \return a static buffer that the next call overwrites.
const char *system_error_text();

#pragma GCC visibility pop
