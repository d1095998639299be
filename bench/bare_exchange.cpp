#include "bench/bare_exchange.h"

#include <arpa/inet.h>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string_view>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr std::size_t chunk_size = 1023;
constexpr std::size_t large_chunk_size = 64 * 1024;
constexpr int wait_width = 1024;
constexpr timeval header_slice = {0, 100000};
constexpr timeval body_slice = {10, 0};

constexpr std::string_view request_pieces[] = {
    "GET ",
    "/",
    " HTTP/1.0\r\n",
    "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n",
    "Accept-Language: en-us\r\n",
    "User-Agent: Morvane_Auto1\r\n",
    "Referer: www." CORVELLA_MAKER_DOMAIN "\r\n",
    "Host: ",
    "127.0.0.1",
    "\r\n",
};

/// A connection on which the request has been sent.
class BareConnection {
public:
    explicit BareConnection(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0))
    {
        const hostent *const found = gethostbyname("127.0.0.1");
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        std::memcpy(&address.sin_addr, found->h_addr_list[0], sizeof address.sin_addr);
        if (socket_ < 0 ||
            connect(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
            throw std::runtime_error("cannot connect to the server");
        }
        setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &body_slice, sizeof body_slice);
        for (const std::string_view piece : request_pieces) {
            send(socket_, piece.data(), piece.size(), MSG_NOSIGNAL | MSG_MORE);
        }
        send(socket_, "\r\n", 2, MSG_NOSIGNAL);
    }
    BareConnection(const BareConnection &) = delete;
    BareConnection &operator=(const BareConnection &) = delete;
    ~BareConnection()
    {
        close(socket_);
    }

    void wait(timeval limit)
    {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(socket_, &readable);
        select(wait_width, &readable, nullptr, nullptr, &limit);
    }

    std::size_t receive(char *bytes, std::size_t size)
    {
        const ssize_t received = recv(socket_, bytes, size, 0);
        return received > 0 ? static_cast<std::size_t>(received) : 0;
    }

    std::string receive_rest()
    {
        std::string body;
        char chunk[chunk_size];
        std::size_t received;
        do {
            wait(body_slice);
            received = receive(chunk, sizeof chunk);
            body.append(chunk, received);
        } while (received > 0);
        return body;
    }

private:
    int socket_;
};

} // namespace

std::string bare_get(std::uint16_t port, std::size_t header_size)
{
    BareConnection connection(port);
    char byte;
    for (std::size_t i = 0; i < header_size; ++i) {
        connection.wait(header_slice);
        connection.receive(&byte, 1);
    }
    return connection.receive_rest();
}

std::string bare_get_with_whole_header(std::uint16_t port, std::size_t header_size)
{
    BareConnection connection(port);
    std::string header(header_size, '\0');
    connection.wait(header_slice);
    connection.receive(header.data(), header_size);
    return connection.receive_rest();
}

std::size_t bare_receive_and_drop(std::uint16_t port)
{
    BareConnection connection(port);
    char chunk[chunk_size];
    std::size_t total = 0;
    std::size_t received;
    do {
        connection.wait(body_slice);
        received = connection.receive(chunk, sizeof chunk);
        total += received;
    } while (received > 0);
    return total;
}

std::size_t bare_receive_large_and_drop(std::uint16_t port)
{
    BareConnection connection(port);
    static char chunk[large_chunk_size];
    std::size_t total = 0;
    std::size_t received;
    do {
        received = connection.receive(chunk, sizeof chunk);
        total += received;
    } while (received > 0);
    return total;
}
