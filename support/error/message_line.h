/// \file
/// The labels of the message levels and the line that the hooks print. Internal to the facility.
#pragma once

/// \return \p level when it is 0 to 10, otherwise 8.
int known_message_level(int level);

/// \return the label of a known level; "" for levels 1 and 6.
const char *message_label(int level);

/// Longest text that a hook's line keeps.
constexpr int HOOK_TEXT_LIMIT = 1003;

/// Size of the buffer in which a hook forms its line, a newline included.
constexpr int HOOK_LINE_SIZE = 1024;

/// Forms the line of a message from at most \p text_limit characters of \p text, see
/// format_message_line(). Cuts it to \p buffer_size bytes with the NUL; a size below 1 writes
/// nothing. \return the number of characters stored.
int compose_message_line(int level, const char *text, int text_limit, char *buffer,
                         int buffer_size);
