/// \file
/// Opening things with the user's applications, where the system offers it.
#pragma once

#include "tool/exit_status.h"

namespace corvella {

/// Opens a file (an absolute path) or a URL. A failure is reported.
exit_status open_on_desktop(const char *target);

} // namespace corvella
