/// \file
/// A web server in a process of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>

/// Answers every request on the loopback interface from memory, in as few sends as it can, and
/// closes the connection. It ends with the object, or with the process that made it.
class ForkedServer {
public:
    /// Answers \p header and \p body_size bytes, none of which is NUL.
    ForkedServer(const std::string &header, std::size_t body_size);
    /// Answers \p header and, as the body, the request.
    static ForkedServer echoing(const std::string &header);

    ForkedServer(const ForkedServer &) = delete;
    ForkedServer &operator=(const ForkedServer &) = delete;
    ~ForkedServer();

    std::uint16_t port() const
    {
        return port_;
    }

private:
    ForkedServer(const std::string &header, std::size_t body_size, bool echoes);

    std::uint16_t port_;
    pid_t process_;
};
