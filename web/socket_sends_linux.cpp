#include "web/socket_sends.h"

#include <sys/socket.h>

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
