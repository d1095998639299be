// Without /proc: whether a connection is accepted, by whichever process.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/harness/listening.h"

bool listens(pid_t, std::uint16_t port)
{
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool connected =
        connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(descriptor);
    return connected;
}
