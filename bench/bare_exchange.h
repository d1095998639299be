/// \file
/// The system calls and the name look-up of a transaction without the transaction: what is left
/// when all that ours does between them costs nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A GET of "/" from 127.0.0.1 in the pieces of a transaction, and the reply's header by a wait and
/// a receive for each byte. \return the body, received by a wait and a receive for each chunk.
std::string bare_get(std::uint16_t port, std::size_t header_size);

/// The same, but the header is received whole.
std::string bare_get_with_whole_header(std::uint16_t port, std::size_t header_size);

/// The same request; all of the reply is received by a wait and a receive for each chunk, and
/// dropped. \return its size.
std::size_t bare_receive_and_drop(std::uint16_t port);

/// The same without waits, in chunks of 64 KiB.
std::size_t bare_receive_large_and_drop(std::uint16_t port);
