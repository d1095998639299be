/// \file
/// Failed assertions, and failures that a caller declared fatal.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Thrown by value to abort. The layer never catches it; uncaught, it ends the process.
struct CorvellaAbortException {
    const char *file;      ///< source name of the place that threw; static, not owned
    std::int32_t line;     ///< line of that place
    std::int32_t code;     ///< set by the thrower; this layer: 5 an assertion, 1 a file to open
    std::int32_t reserved; ///< always 0
};

/// Records a failed assertion, reports an internal error at level 9, and throws
/// CorvellaAbortException.
///
/// The record is "file:line: assertion failed: expression", truncated to 4095 characters. The
/// report is one fixed sentence: the user never sees the expression. If the message hook ends the
/// process or throws, this function does not throw its own exception.
///
/// On purpose: the exception always has the file "support/error", the line 429 and the code 5,
/// regardless of the assertion.
///
/// \param expression the source of the failed condition
/// \param file,line where the assertion is
[[noreturn]] void assertion_failed(const char *expression, const char *file, int line);

/// Throws a CorvellaAbortException.
/// \param code the exception's code
/// \param file the exception's file; not copied: must have static lifetime, may be null
/// \param line the exception's line
[[noreturn]] void throw_abort(int code, const char *file, int line);

#pragma GCC visibility pop
