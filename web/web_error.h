/// \file
/// The text of the web client's last failure.
#pragma once

#pragma GCC visibility push(default)

/// Replaces the last error text by printf-style text, which may quote web_last_error() itself.
/// \throws std::bad_alloc when memory is exhausted; the earlier text is kept then.
[[gnu::format(printf, 1, 2)]] void set_web_error(const char *format, ...);

/// \return the last error text, or "" when there is none. It stays the web client's and is valid
/// until the next call of set_web_error() or of a function of the web client that may fail.
const char *web_last_error();

/// Describes errno as "code N: description" (strerror, POSIX), cut at 1023 characters. errno itself
/// is read once, and first.
/// \return a fixed buffer that the next call overwrites.
const char *system_error_text();

#pragma GCC visibility pop
