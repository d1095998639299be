/// \file
/// Where messages and raw strings go: two replaceable hooks, and four built-in ones.
///
/// The strings that a hook receives are valid only during its call. A hook may call the message
/// facility if it ends the recursion itself. A hook may throw; the message is then not counted.
#pragma once

#pragma GCC visibility push(default)

/// Receives the string and the tag of each write_raw_message(). The result is ignored.
using OutputHook = int (*)(const char *text, const char *tag);

/// Receives each message of level 1 to 10 as its level and expanded text, without a label.
/// report_message() returns the hook's result.
using MessageHook = int (*)(int level, const char *text);

/// Installs the output hook.
/// \param hook the new hook; null installs default_output_hook()
/// \return the previous hook.
OutputHook set_output_hook(OutputHook hook);

/// Installs the message hook.
/// \param hook the new hook; null installs default_message_hook()
/// \return the previous hook.
MessageHook set_message_hook(MessageHook hook);

/// Writes a raw string to standard error.
/// \param text written unchanged
/// \param tag ignored; may be null
/// \return 0, or EOF if the write fails.
int default_output_hook(const char *text, const char *tag);

/// Writes a message's line and a newline to standard error and flushes it.
///
/// At level 10 it then ends the process with exit status 1; nothing else in the facility ends the
/// process.
///
/// \param level the message's level
/// \param text the message, truncated to 1003 characters; see format_message_line()
/// \return the result of the flush.
int default_message_hook(int level, const char *text);

/// Prints "CORVELLATEST", the tag, ": ", the string and the line "ENDCORVELLATEST" to standard
/// output and flushes it, for automated runs.
/// \param text printed unchanged
/// \param tag must not be null
/// \return the result of the flush.
int test_output_hook(const char *text, const char *tag);

/// Prints the line of default_message_hook() between "CORVELLATEST" and "ENDCORVELLATEST" to
/// standard output and flushes it, for automated runs. Never ends the process, even at level 10.
/// \param level the message's level
/// \param text the message, truncated as in default_message_hook()
/// \return the result of the flush.
int test_message_hook(int level, const char *text);

#pragma GCC visibility pop
