/// \file
/// The labels of the message levels and the line that the hooks print. Internal to the facility.
#pragma once

namespace corvella {

/// \return \p level when it is 0 to 10, otherwise 8.
int known_message_level(int level);

/// \return the label of a known level; "" for levels 1 and 6.
const char *message_label(int level);

/// What a line needs beside its text: the longest label, ": ", the bell and the NUL fit into it.
constexpr int LINE_OVERHEAD = 20;

/// Size of the buffer in which a hook forms its line, a newline included.
constexpr int HOOK_LINE_SIZE = 1024;

/// Longest text that a hook's line keeps.
constexpr int HOOK_TEXT_LIMIT = HOOK_LINE_SIZE - 1 - LINE_OVERHEAD;
static_assert(HOOK_TEXT_LIMIT == 1003, "the limit that callers are told");

/// Forms the line of a message from at most \p text_limit characters of \p text, see
/// format_message_line(). Cuts it to \p buffer_size bytes with the NUL; a size below 1 writes
/// nothing. \return the number of characters stored.
int compose_message_line(int level, const char *text, int text_limit, char *buffer,
                         int buffer_size);

} // namespace corvella
