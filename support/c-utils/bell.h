/// \file
/// The terminal bell.
#pragma once

#pragma GCC visibility push(default)

/// Writes the character BEL (7) to standard error, even if that is not a terminal.
void ring_bell();

#pragma GCC visibility pop
