/// \file
/// Calling the hooks in force. Internal to the facility.
#pragma once

/// Hands a text and its tag to the output hook. \return its result.
int call_output_hook(const char *text, const char *tag);

/// Hands a message to the message hook. \return its result.
int call_message_hook(int level, const char *text);
