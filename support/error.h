/// \file
/// The message and error facility: messages, the indented print path, the time-stamp recorder,
/// assertions and aborts, checked allocation.
///
/// Texts are NUL-terminated bytes in no particular encoding, and sizes count bytes. Where it is not
/// said otherwise no pointer may be null and no two texts of a call may overlap: that much is the
/// caller's duty, whatever else is given is answered as the comments say. Formats are those of
/// printf (ISO C), and it is the caller's duty that the arguments fit them; the compiler checks it.
/// Single-threaded, like the whole layer: nothing is locked, and nothing may be called from a
/// signal handler.
#pragma once

#include "support/error/abort.h"
#include "support/error/allocation.h"
#include "support/error/hooks.h"
#include "support/error/messages.h"
#include "support/error/print.h"
#include "support/error/recorder.h"
