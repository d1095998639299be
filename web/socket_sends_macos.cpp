#include "web/socket_sends.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace corvella {
namespace {

// The time limit of a send applies to each of its waits for room in the buffer. A slow peer could
// make one long send wait many times, in which no callback would be called.
constexpr std::size_t greatest_send = 8192;

void set_flag(int socket, int level, int option, int value)
{
    setsockopt(socket, level, option, &value, sizeof value);
}

} // namespace

void prepare_socket(int socket)
{
    // Before anything can go wrong: on a socket that the peer has reset it could not be set.
    set_flag(socket, SOL_SOCKET, SO_NOSIGPIPE, 1);
}

void prepare_sends(int socket)
{
    set_flag(socket, IPPROTO_TCP, TCP_NOPUSH, 1);
}

ssize_t send_piece(int socket, const char *bytes, std::size_t length, bool more)
{
    if (length > greatest_send) {
        length = greatest_send;
        more = true;
    }
    if (!more) {
        // Before the last piece, because not every version sends what was held back by this alone.
        set_flag(socket, IPPROTO_TCP, TCP_NOPUSH, 0);
    }
    return send(socket, bytes, length, 0);
}

std::int64_t unsent_bytes(int socket)
{
    int count = 0;
    socklen_t size = sizeof count;
    return getsockopt(socket, SOL_SOCKET, SO_NWRITE, &count, &size) == 0 ? count : -1;
}

} // namespace corvella
