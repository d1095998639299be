/// \file
/// Telling the steps of a transaction. Internal to the web client.
#pragma once

#include "web/transaction.h"

/// Calls the step callback, if there is one.
void tell_step(WebStep step);
