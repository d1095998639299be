#include "bench/server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <netinet/in.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t block_size = 1 << 20;

int listen_on_loopback(std::uint16_t &port)
{
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    sockaddr *const general = reinterpret_cast<sockaddr *>(&address);
    if (listener < 0 || bind(listener, general, size) != 0 || listen(listener, 16) != 0 ||
        getsockname(listener, general, &size) != 0) {
        throw std::runtime_error("cannot listen on the loopback interface");
    }
    port = ntohs(address.sin_port);
    return listener;
}

bool send_all(int connection, std::string_view bytes, int flags)
{
    while (!bytes.empty()) {
        const ssize_t sent = send(connection, bytes.data(), bytes.size(), flags | MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// \return the request up to its empty line, or what came of it.
std::string receive_request(int connection)
{
    std::string request;
    char bytes[4096];
    while (request.find("\r\n\r\n") == std::string::npos) {
        const ssize_t received = recv(connection, bytes, sizeof bytes, 0);
        if (received <= 0) {
            break;
        }
        request.append(bytes, static_cast<std::size_t>(received));
    }
    return request;
}

/// What stands in front of the first block is sent together with it.
void send_reply(int connection, const std::string &first, const std::string &block,
                std::size_t left)
{
    bool going = send_all(connection, first, left > 0 ? MSG_MORE : 0);
    while (going && left > 0) {
        const std::size_t count = std::min(left, block.size());
        going = send_all(connection, std::string_view(block).substr(0, count), 0);
        left -= count;
    }
}

[[noreturn]] void serve(int listener, const std::string &header, std::size_t body_size, bool echoes)
{
    std::string first = header;
    const std::string block = [] {
        std::string bytes(block_size, ' ');
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<char>('!' + i % 89);
        }
        return bytes;
    }();
    std::size_t rest = body_size;
    if (body_size <= block_size) {
        first.append(block, 0, body_size);
        rest = 0;
    }
    for (;;) {
        const int connection = accept(listener, nullptr, nullptr);
        if (connection < 0) {
            _exit(1);
        }
        const timeval limit = {10, 0};
        setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        const std::string request = receive_request(connection);
        send_reply(connection, echoes ? header + request : first, block, rest);
        close(connection);
    }
}

} // namespace

ForkedServer::ForkedServer(const std::string &header, std::size_t body_size)
    : ForkedServer(header, body_size, false)
{
}

ForkedServer ForkedServer::echoing(const std::string &header)
{
    return ForkedServer(header, 0, true);
}

ForkedServer::ForkedServer(const std::string &header, std::size_t body_size, bool echoes)
{
    const int listener = listen_on_loopback(port_);
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ < 0) {
        throw std::runtime_error("cannot fork the server");
    }
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(1);
        }
        serve(listener, header, body_size, echoes);
    }
    close(listener);
}

ForkedServer::~ForkedServer()
{
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}
