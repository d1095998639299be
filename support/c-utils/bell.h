/// \file
/// The terminal's bell.
#pragma once

/// Writes the character BEL (7) to standard error.
void ring_bell();
