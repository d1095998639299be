/// \file
/// Real web servers and proxies, each on a free port of the loopback interface.
///
///     const NginxServer nginx;
///     nginx.add_file("hello.txt", "Hello\n");
///     ... a client asks for nginx.url("/hello.txt") ...
///
/// Each is a child process in the foreground, with its configuration and logs in a directory of
/// its own, and is stopped by its destructor. Any number may run at the same time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "tests/harness/child_process.h"
#include "tests/harness/temporary_directory.h"

class ServerProcess {
public:
    ServerProcess(const ServerProcess &) = delete;
    ServerProcess &operator=(const ServerProcess &) = delete;

    std::uint16_t port() const
    {
        return port_;
    }
    /// The address of a page: "http://127.0.0.1:PORT" and \p path, which begins with a slash.
    std::string url(std::string_view path) const;
    /// What the server logged of its own accord.
    std::string log() const;

protected:
    ServerProcess() = default;
    ~ServerProcess();

    /// Starts the server on a free port; another one when it is taken meanwhile.
    /// \param command_for writes the configuration for a port and gives the command; its output
    /// goes to the log.
    /// \throws std::runtime_error with the log when no port works.
    void start(const std::function<ChildCommand(std::uint16_t port)> &command_for);
    /// A second call does nothing.
    void stop();
    const TemporaryDirectory &directory() const
    {
        return directory_;
    }

private:
    bool start_on(std::uint16_t port, ChildCommand command);

    TemporaryDirectory directory_;
    std::uint16_t port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

/// A server of static files, which are in a folder.
class FileServer : public ServerProcess {
public:
    /// Puts a file, or a piece at the end of one, into the folder; its name may have folders too.
    void add_file(const std::string &name, std::string_view content) const;

protected:
    FileServer();
    ~FileServer() = default;
    std::string folder() const;
};

class NginxServer : public FileServer {
public:
    /// \param locations more of the configuration's server block.
    explicit NginxServer(const std::string &locations = "");
};

class LighttpdServer : public FileServer {
public:
    LighttpdServer();
};

/// The web server of busybox.
class BusyboxServer : public FileServer {
public:
    BusyboxServer();
};

/// Python's http.server.
class PythonServer : public FileServer {
public:
    PythonServer();
};

/// PHP's own web server, with one page for every path.
class PhpServer : public ServerProcess {
public:
    /// The stand-in of the maker's service.
    PhpServer();
    /// A page of the test's own, given as PHP text.
    explicit PhpServer(std::string_view page);

private:
    void start_with(const std::string &script);
};

/// What a proxy does with a client of the loopback interface.
enum class ProxyRule { serve, refuse, ask_for_password };

/// tinyproxy. With \p upstream, all requests go on to the proxy at that port.
class TinyProxy : public ServerProcess {
public:
    explicit TinyProxy(ProxyRule rule = ProxyRule::serve, std::uint16_t upstream = 0);
};

/// squid, without any cache.
class SquidProxy : public ServerProcess {
public:
    explicit SquidProxy(ProxyRule rule = ProxyRule::serve, std::uint16_t upstream = 0);
    SquidProxy(const SquidProxy &) = delete;
    SquidProxy &operator=(const SquidProxy &) = delete;
    ~SquidProxy();

private:
    /// It is named after the service, and outlives a squid that was killed or gave up.
    void remove_shared_memory() const;

    std::string service_name_;
};

/// The names of the proxies in the names of typed tests.
struct ProxyNames {
    template <typename Proxy> static std::string GetName(int)
    {
        return std::is_same_v<Proxy, TinyProxy> ? "tinyproxy" : "squid";
    }
};
