/// \file
/// Where messages and raw texts go: two replaceable hooks and the four ready-made ones.
///
/// A hook gets texts that are valid only during its call. It may call the facility itself, and must
/// then see to it that this ends; it may throw, and the message is not counted then.
#pragma once

#pragma GCC visibility push(default)

/// Receives the texts of write_raw_message() with their tags. Its result is ignored.
using OutputHook = int (*)(const char *text, const char *tag);

/// Receives the messages of levels 1 to 10: the level and the expanded text, without a label. Its
/// result becomes report_message()'s.
using MessageHook = int (*)(int level, const char *text);

/// Installs \p hook, or default_output_hook() when it is null.
/// \return the hook that was in force before.
OutputHook set_output_hook(OutputHook hook);

/// Installs \p hook, or default_message_hook() when it is null.
/// \return the hook that was in force before.
MessageHook set_message_hook(MessageHook hook);

/// Writes \p text to standard error as it stands. \p tag is ignored and may be null.
/// \return 0, or EOF when the text could not be written.
int default_output_hook(const char *text, const char *tag);

/// Writes the message's line (at most 1003 characters of \p text, see format_message_line()) and a
/// newline to standard error and flushes it. At level 10 it then ends the process with exit
/// status 1; nothing else in the facility ends the process.
/// \return the result of the flush.
int default_message_hook(int level, const char *text);

/// Frames a raw text for an automated run: prints "CORVELLATEST", the tag, ": ", the text and the
/// line "ENDCORVELLATEST" to standard output and flushes it. \p tag must not be null.
/// \return the result of the flush.
int test_output_hook(const char *text, const char *tag);

/// Frames a message for an automated run: the line that default_message_hook() would write, between
/// "CORVELLATEST" and "ENDCORVELLATEST" on standard output, which is flushed. Never ends the
/// process, not even at level 10.
/// \return the result of the flush.
int test_message_hook(int level, const char *text);

#pragma GCC visibility pop
