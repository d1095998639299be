#include "tests/harness/scripted_server.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#ifdef __linux__
#include <linux/tcp.h> // knows of counters that <netinet/tcp.h> does not
#else
#include <netinet/tcp.h>
#endif

namespace {

constexpr int longest_wait_ms = 40000;

/// A socket bound to a free port of the loopback interface; \p port receives the port.
int bound_socket(std::uint16_t &port)
{
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (descriptor < 0 || bind(descriptor, generic, size) != 0 ||
        getsockname(descriptor, generic, &size) != 0) {
        throw std::runtime_error("no socket for the test");
    }
    port = ntohs(address.sin_port);
    return descriptor;
}

void close_pipe(const int (&ends)[2])
{
    close(ends[0]);
    close(ends[1]);
}

} // namespace

bool ScriptedConnection::ready(short events)
{
    return socket_ >= 0 && server_.wait_for(socket_, events, longest_wait_ms);
}

bool ScriptedConnection::collect_until(const std::function<bool(const std::string &received)> &done)
{
    while (!done(received_)) {
        if (receive_some(SIZE_MAX) == 0) {
            return false;
        }
    }
    return true;
}

std::size_t ScriptedConnection::receive_some(std::size_t size)
{
    std::array<char, 65536> block;
    if (!ready(POLLIN)) {
        return 0;
    }
    const ssize_t count = recv(socket_, block.data(), std::min(size, block.size()), 0);
    if (count <= 0) {
        return 0;
    }
    const std::string_view bytes(block.data(), static_cast<std::size_t>(count));
    received_ += bytes;
    server_.record(bytes);
    return bytes.size();
}

bool ScriptedConnection::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (!ready(POLLOUT)) {
            return false;
        }
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), 0);
        if (count < 0 && errno != EAGAIN) {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

bool ScriptedConnection::wait(int milliseconds)
{
    pollfd stop = {server_.stop_pipe_[0], POLLIN, 0};
    return poll(&stop, 1, milliseconds) == 0;
}

bool ScriptedConnection::wait_for_release()
{
    char byte;
    return server_.wait_for(server_.release_pipe_[0], POLLIN, longest_wait_ms) &&
           read(server_.release_pipe_[0], &byte, 1) == 1;
}

int ScriptedConnection::data_segments() const
{
#ifdef __linux__
    tcp_info info = {};
    socklen_t size = sizeof info;
    constexpr std::size_t needed = offsetof(tcp_info, tcpi_data_segs_in) + sizeof(__u32);
    if (getsockopt(socket_, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && size >= needed) {
        return static_cast<int>(info.tcpi_data_segs_in);
    }
#endif
    return -1;
}

void ScriptedConnection::close()
{
    if (socket_ >= 0) {
        ::close(socket_);
        socket_ = -1;
    }
}

void ScriptedConnection::half_close()
{
    shutdown(socket_, SHUT_WR);
}

void ScriptedConnection::reset()
{
    const linger at_once = {1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close();
}

ScriptStep collect_request(std::size_t body_size)
{
    return [body_size](ScriptedConnection &connection) {
        return connection.collect_until([body_size](const std::string &received) {
            const std::size_t end = received.find("\r\n\r\n");
            return end != std::string::npos && received.size() >= end + 4 + body_size;
        });
    };
}

ScriptStep collect_slowly(std::size_t size, std::size_t chunk, int milliseconds)
{
    return [size, chunk, milliseconds](ScriptedConnection &connection) {
        std::size_t left = size;
        while (left > 0) {
            const std::size_t count = connection.receive_some(std::min(chunk, left));
            if (count == 0 || !connection.wait(milliseconds)) {
                return false;
            }
            left -= count;
        }
        return true;
    };
}

ScriptStep collect_to_end()
{
    return [](ScriptedConnection &connection) {
        connection.collect_until([](const std::string &) { return false; });
        return true;
    };
}

ScriptStep send_bytes(std::string bytes)
{
    return [bytes = std::move(bytes)](ScriptedConnection &connection) {
        return connection.send(bytes);
    };
}

ScriptStep send_one_by_one(std::string bytes, int milliseconds)
{
    return [bytes = std::move(bytes), milliseconds](ScriptedConnection &connection) {
        for (const char &byte : bytes) {
            if (!connection.send({&byte, 1}) || !connection.wait(milliseconds)) {
                return false;
            }
        }
        return true;
    };
}

ScriptStep pause_for(int milliseconds)
{
    return [milliseconds](ScriptedConnection &connection) { return connection.wait(milliseconds); };
}

ScriptStep stay_silent()
{
    return [](ScriptedConnection &connection) { return connection.wait_for_release(); };
}

ScriptStep half_close()
{
    return [](ScriptedConnection &connection) {
        connection.half_close();
        return true;
    };
}

ScriptStep close_connection()
{
    return [](ScriptedConnection &connection) {
        connection.close();
        return true;
    };
}

ScriptStep reset_connection()
{
    return [](ScriptedConnection &connection) {
        connection.reset();
        return true;
    };
}

ScriptedServer::ScriptedServer(ServerScript script, bool accepting, int receive_buffer)
    : script_(std::move(script)), listener_(bound_socket(port_))
{
    if (receive_buffer > 0) {
        setsockopt(listener_, SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
    }
    if (listen(listener_, 16) != 0 || pipe(stop_pipe_) != 0 || pipe(release_pipe_) != 0) {
        throw std::runtime_error("no server for the test");
    }
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this, accepting] { run(accepting); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    while (!started_) {
        std::this_thread::yield();
    }
}

ScriptedServer::~ScriptedServer()
{
    stop();
    close(listener_);
    close_pipe(stop_pipe_);
    close_pipe(release_pipe_);
}

void ScriptedServer::release()
{
    if (write(release_pipe_[1], "r", 1) != 1) {
        throw std::runtime_error("the server cannot be released");
    }
}

bool ScriptedServer::wait_until_served(std::size_t count)
{
    for (int waited = 0; waited < longest_wait_ms; waited += 5) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (served_ >= count) {
                return true;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

void ScriptedServer::stop()
{
    if (thread_.joinable()) {
        // The byte is never read, so that all waits from here on end at once.
        if (write(stop_pipe_[1], "s", 1) != 1) {
            throw std::runtime_error("the server cannot be stopped");
        }
        thread_.join();
    }
}

std::vector<std::string> ScriptedServer::requests()
{
    stop();
    return requests_;
}

std::size_t ScriptedServer::connection_count()
{
    return requests().size();
}

void ScriptedServer::run(bool accepting)
{
    started_ = true;
    if (!accepting) {
        wait_for(-1, 0, -1);
        return;
    }
    // Clients that the script has not come to yet are still counted when the server is stopped.
    while (wait_for(listener_, POLLIN, -1)) {
        serve(accept(listener_, nullptr, nullptr));
    }
    fcntl(listener_, F_SETFL, O_NONBLOCK);
    for (int socket = -1; (socket = accept(listener_, nullptr, nullptr)) >= 0; close(socket)) {
        requests_.emplace_back();
    }
}

void ScriptedServer::serve(int socket)
{
    fcntl(socket, F_SETFL, O_NONBLOCK);
    const int at_once = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        requests_.emplace_back();
    }
    {
        ScriptedConnection connection(*this, socket);
        for (const ScriptStep &step : script_) {
            if (!step(connection)) {
                break;
            }
        }
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    ++served_;
}

bool ScriptedServer::wait_for(int descriptor, short events, int milliseconds)
{
    std::array<pollfd, 2> both = {
        {{stop_pipe_[0], POLLIN, 0}, {descriptor, events, 0}}}; // poll passes over a -1
    return poll(both.data(), both.size(), milliseconds) > 0 && both[0].revents == 0;
}

void ScriptedServer::record(std::string_view bytes)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    requests_.back() += bytes;
}

RefusingPort::RefusingPort() : socket_(bound_socket(port_)) {}

RefusingPort::~RefusingPort()
{
    close(socket_);
}
