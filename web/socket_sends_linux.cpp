#include "web/socket_sends.h"

#include <sys/socket.h>
#include <sys/time.h>

#include "web/wait.h"

void prepare_socket(int)
{
    // Each send says for itself that it wants no signal.
}

void prepare_sends(int socket)
{
    const timeval limit = {SILENCE_LIMIT_SECONDS, 0};
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

ssize_t send_piece(int socket, const char *bytes, std::size_t length, bool more)
{
    return send(socket, bytes, length, MSG_NOSIGNAL | (more ? MSG_MORE : 0));
}
