/// \file
/// How the program ends.
#pragma once

namespace corvella {

enum exit_status {
    EXIT_DONE = 0,
    EXIT_FAILED = 1,
    EXIT_USAGE = 2,
    EXIT_TIMED_OUT = 3,
    EXIT_CANCELLED = 130, ///< as a shell says of a program that Ctrl-C ended
};

} // namespace corvella
