/// \file
/// The message and error facility: messages, the indented print path, the time-stamp recorder,
/// assertions and aborts, checked allocation.
///
/// Strings are NUL-terminated bytes in no particular encoding, and sizes count bytes. Except where
/// documented otherwise, no pointer may be null and no two strings of a call may overlap; every
/// other argument is handled as the comments describe. Formats are those of printf (ISO C): the
/// caller passes the arguments that a format needs, and the compiler checks them. The layer is
/// single-threaded: nothing is locked, and nothing may be called from a signal handler.
#pragma once

#include "support/error/abort.h"
#include "support/error/allocation.h"
#include "support/error/hooks.h"
#include "support/error/messages.h"
#include "support/error/print.h"
#include "support/error/recorder.h"
