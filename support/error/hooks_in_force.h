/// \file
/// The hooks in force. Internal to the facility: set_output_hook() and set_message_hook() are the
/// way in from outside.
#pragma once

#include "support/error/hooks.h"

/// Never null.
extern OutputHook output_hook;

/// Never null.
extern MessageHook message_hook;
