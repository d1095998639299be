/// \file
/// Calls that cannot be answered. Internal to the option parser.
#pragma once

#include "support/options.h"

/// \return 0 for a call with elements and a description of options. For any other, '?', which it
/// stores in option_code; but -1 when it is the same bad call once more, so that a loop until -1
/// ends.
int refuse_bad_call(int count, char *const *vector, const char *short_options,
                    const long_option *long_options);
