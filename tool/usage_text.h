/// \file
/// The usage text.
#pragma once

#include <string>

namespace corvella {

/// \return the whole text, no line longer than \p columns but those of the table of options that
/// stay whole; for fewer than 40 columns as for 40.
std::string usage_text(int columns);

} // namespace corvella
