/// \file
/// Looking long options up by their names. Internal to the option parser.
#pragma once

#include <cstddef>

#include "support/options.h"

namespace corvella {

struct long_name_match {
    const long_option *record; ///< null when none matches
    const long_option *second; ///< the other one of an ambiguity, or null
    std::size_t length;        ///< of the name given
};

/// Looks up what \p text says before its first "=": a name or the beginning of one. The first exact
/// match wins, unless a second abbreviated one stands before it.
long_name_match match_long_name(const long_option *table, const char *text);

} // namespace corvella
