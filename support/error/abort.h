/// \file
/// Giving up: failed assertions and failures that a caller declared fatal.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Thrown by value to give up. The layer never catches it, so that it ends a process that does not.
struct CorvellaAbortException {
    const char *file;      ///< source name of the place that threw; static, not owned
    std::int32_t line;     ///< line of that place
    std::int32_t code;     ///< the thrower's; this layer: 5 an assertion, 1 a file to open
    std::int32_t reserved; ///< always 0
};

/// Raises an internal error: records "file:line: assertion failed: expression" (cut at 4095
/// characters), reports one fixed sentence at level 9 and throws. The user never sees the
/// expression. Deliberately the exception always carries the file "support/error", the line 429
/// and the code 5, whichever assertion failed. Should the message hook end the process or throw,
/// that comes first.
[[noreturn]] void assertion_failed(const char *expression, const char *file, int line);

/// Throws a CorvellaAbortException that carries the three. \p file is not copied: it must have
/// static lifetime, and may be null.
[[noreturn]] void throw_abort(int code, const char *file, int line);

#pragma GCC visibility pop
