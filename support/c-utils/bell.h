/// \file
/// The terminal's bell.
#pragma once

#pragma GCC visibility push(default)

/// Writes the character BEL (7) to standard error, whether that is a terminal or not.
void ring_bell();

#pragma GCC visibility pop
