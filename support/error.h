/// \file
/// The message and error facility: messages, the indented print path, the time-stamp recorder,
/// assertions and aborts, checked allocation. Single-threaded, like the whole layer.
#pragma once

#include "support/error/abort.h"
#include "support/error/allocation.h"
#include "support/error/hooks.h"
#include "support/error/messages.h"
#include "support/error/print.h"
#include "support/error/recorder.h"
