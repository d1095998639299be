/// \file
/// Whether a server is ready. Internal to the harness.
#pragma once

#include <cstdint>
#include <sys/types.h>

/// \return whether \p process listens on \p port of 127.0.0.1.
bool listens(pid_t process, std::uint16_t port);
