#include "web/connection.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "web/client_state.h"
#include "web/socket_sends.h"
#include "web/wait.h"
#include "web/web_error.h"

namespace corvella {

int create_web_socket()
{
    int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor >= WAIT_DESCRIPTORS) {
        close(descriptor);
        errno = EMFILE;
        descriptor = -1;
    }
    if (descriptor < 0) {
        set_web_error("Can't create web socket, %s", system_error_text());
        return -1;
    }
    prepare_socket(descriptor);
    return descriptor;
}

bool connect_web_socket(int socket, const char *host, const char *name, std::uint16_t port)
{
    const hostent *const found = gethostbyname(name);
    if (found == nullptr) {
        // Deliberately the web server's name, also when it was the proxy's that was not found.
        set_web_error("Can't find web server '%s': %s", host, hstrerror(h_errno));
        return false;
    }
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    std::memcpy(&address.sin_addr, found->h_addr_list[0], sizeof address.sin_addr);
    notify_step(WEB_ADDRESS_FOUND);
    if (connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        set_web_error("Can't connect to web server '%s': %s", host, system_error_text());
        return false;
    }
    // Not before: some systems would cut the connection attempt short by it.
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &short_slice, sizeof short_slice);
    prepare_sends(socket);
    notify_step(WEB_CONNECTED);
    return true;
}

void close_web_socket(int *socket)
{
    close(*socket);
}

} // namespace corvella
