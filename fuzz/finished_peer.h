/// \file
/// A peer that has sent its whole reply before it reads the request: in a program with this file,
/// the library's sockets are one end of a pair whose other end did that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// What the next socket gives.
struct FinishedPeer {
    std::string reply;
    std::size_t receive_at_most = SIZE_MAX; ///< the most that one recv takes
};

extern FinishedPeer finished_peer;
