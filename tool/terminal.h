/// \file
/// The terminal that a person has in front.
#pragma once

namespace corvella {

/// \return how many characters a line has: as the environment's COLUMNS says with a number from 1
/// to 9999, or the terminal at \p descriptor, or 79 where neither does.
int terminal_columns(int descriptor);

} // namespace corvella
