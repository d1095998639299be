#include "web/socket_sends.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace corvella {

void prepare_socket(int)
{
    // Each send says for itself that it wants no signal.
}

void prepare_sends(int)
{
    // Each send says for itself whether more follows.
}

ssize_t send_piece(int socket, const char *bytes, std::size_t length, bool more)
{
    return send(socket, bytes, length, MSG_NOSIGNAL | (more ? MSG_MORE : 0));
}

std::int64_t unsent_bytes(int socket)
{
    int count = 0;
    return ioctl(socket, SIOCOUTQ, &count) == 0 ? count : -1;
}

} // namespace corvella
