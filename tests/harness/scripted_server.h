/// \file
/// A web server on the loopback interface that does what a script says, step by step.
///
///     ScriptedServer server({collect_request(), send_bytes("HTTP/1.0 200 OK\r\n\r\nbody")});
///     ... a client talks to 127.0.0.1, server.port() ...
///     EXPECT_EQ(server.requests(), ...);
///
/// The server runs in a thread of its own in which all signals are blocked, so that signals reach
/// the test's thread and a client that is gone cannot end the process. Each connection runs the
/// whole script, one connection after the other; where a script ends, the connection is closed.
/// A connection must have been read to its end before it is closed, or the client may see a reset.
///
/// Nothing here can hang: each step gives up when the server is stopped, and after 40 s.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

class ScriptedServer;

/// What a step may do with the connection that it serves. Where a result is given, it is false when
/// the client has gone, the server is being stopped, or the time has run out.
class ScriptedConnection {
public:
    ScriptedConnection(ScriptedServer &server, int socket) : server_(server), socket_(socket) {}
    ScriptedConnection(const ScriptedConnection &) = delete;
    ScriptedConnection &operator=(const ScriptedConnection &) = delete;
    ~ScriptedConnection()
    {
        close();
    }

    /// Receives until \p done says so of all that this connection has received.
    bool collect_until(const std::function<bool(const std::string &received)> &done);
    /// Receives at most \p size bytes, which are there at least in part. \return how many; 0 as
    /// above.
    std::size_t receive_some(std::size_t size);
    bool send(std::string_view bytes);
    bool wait(int milliseconds);
    bool wait_for_release();
    /// How many segments with data have come; -1 where the system does not tell.
    int data_segments() const;
    void close();
    /// Sends no more, but can still receive.
    void half_close();
    /// Closes so that the client sees "connection reset by peer".
    void reset();

private:
    bool ready(short events);

    ScriptedServer &server_;
    int socket_;
    std::string received_;
};

/// One step; the script ends where a step returns false.
using ScriptStep = std::function<bool(ScriptedConnection &connection)>;
using ServerScript = std::vector<ScriptStep>;

/// Receives a request: all up to its empty line, and \p body_size bytes behind it.
ScriptStep collect_request(std::size_t body_size = 0);
/// Receives \p size bytes, at most \p chunk of them every \p milliseconds.
ScriptStep collect_slowly(std::size_t size, std::size_t chunk, int milliseconds);
/// Receives until the client closes.
ScriptStep collect_to_end();
ScriptStep send_bytes(std::string bytes);
/// Sends every byte by itself, with a pause behind each.
ScriptStep send_one_by_one(std::string bytes, int milliseconds = 0);
ScriptStep pause_for(int milliseconds);
/// Stays silent until ScriptedServer::release(); the client may meanwhile go.
ScriptStep stay_silent();
/// Ends the reply, but leaves the connection open for what the client may still send.
ScriptStep half_close();
ScriptStep close_connection();
ScriptStep reset_connection();

class ScriptedServer {
public:
    /// Listens from here on. With \p accepting false, clients get a connection from the system that
    /// nobody ever reads. The server's thread leaves the heap alone until the first client comes,
    /// so that the test may fork: a heap that another thread is using cannot be used in the child.
    /// With a \p receive_buffer, SO_RCVBUF of each connection.
    /// \throws std::runtime_error when there is no socket to be had.
    explicit ScriptedServer(ServerScript script, bool accepting = true, int receive_buffer = 0);
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;
    ~ScriptedServer();

    /// The port, chosen by the system.
    std::uint16_t port() const
    {
        return port_;
    }
    /// Ends one stay_silent().
    void release();
    /// Waits (at most 40 s) until the scripts of \p count connections have ended.
    bool wait_until_served(std::size_t count = 1);
    /// Ends the script that runs, if any, and the thread. A second call does nothing.
    void stop();
    /// What each connection sent, in their order; stops the server, so that nothing is missing.
    std::vector<std::string> requests();
    /// How many connections there were; stops the server.
    std::size_t connection_count();

private:
    friend class ScriptedConnection;

    void run(bool accepting);
    void serve(int socket);
    /// False when \p descriptor is not ready in time or the server is being stopped.
    bool wait_for(int descriptor, short events, int milliseconds);
    void record(std::string_view bytes);

    ServerScript script_;
    std::uint16_t port_ = 0;
    int listener_;
    int stop_pipe_[2] = {-1, -1};
    int release_pipe_[2] = {-1, -1};
    std::mutex mutex_; ///< guards the two below
    std::vector<std::string> requests_;
    std::size_t served_ = 0;
    std::atomic<bool> started_ = false;
    std::thread thread_;
};

/// A port of the loopback interface that refuses connections, for as long as this lives.
class RefusingPort {
public:
    RefusingPort();
    RefusingPort(const RefusingPort &) = delete;
    RefusingPort &operator=(const RefusingPort &) = delete;
    ~RefusingPort();
    std::uint16_t port() const
    {
        return port_;
    }

private:
    std::uint16_t port_ = 0;
    int socket_;
};
