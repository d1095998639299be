/// \file
/// Writing a result to a file.
#pragma once

#include <string_view>

namespace corvella {

/// Checks, before anything is requested, whether write_output_file() can work.
/// \return false after reporting why not.
bool check_output_file(const char *path);

/// Writes bytes to a file. It appears under its name only when all have arrived; until then they
/// are in a file of another name beside it, and what was there before stays. A symbolic link stays
/// one, a hard link is cut. A file is replaced also where its permissions forbid writing, and the
/// new one gets them where the system allows it. A device or pipe is written to directly.
/// \return whether it worked; if not, it is reported and nothing half-written is left.
bool write_output_file(const char *path, std::string_view bytes);

} // namespace corvella
