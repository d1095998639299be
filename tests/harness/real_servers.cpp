#include "tests/harness/real_servers.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <netinet/in.h>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/harness/listening.h"

namespace {

using std::chrono::milliseconds;

constexpr int ports_tried = 10;
constexpr auto longest_start = std::chrono::seconds(30);
constexpr auto longest_stop = std::chrono::seconds(10);
constexpr unsigned nobody = 65534;

std::uint16_t free_port()
{
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    const bool bound =
        bind(descriptor, generic, size) == 0 && getsockname(descriptor, generic, &size) == 0;
    close(descriptor);
    if (!bound) {
        throw std::runtime_error("no port for the test");
    }
    return ntohs(address.sin_port);
}

/// Not every server likes to be the superuser.
void give_to_nobody(const std::string &path)
{
    if (geteuid() == 0 && chown(path.c_str(), nobody, nobody) != 0) {
        throw std::runtime_error("cannot give away " + path);
    }
}

void become_nobody()
{
    if (geteuid() == 0 &&
        (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
        _exit(127);
    }
}

} // namespace

std::string ServerProcess::url(std::string_view path) const
{
    return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

std::string ServerProcess::log() const
{
    return directory_.read("server.log");
}

ServerProcess::~ServerProcess()
{
    stop();
}

void ServerProcess::stop()
{
    if (process_ != nullptr) {
        process_->stop(longest_stop);
    }
}

void ServerProcess::start(const std::function<ChildCommand(std::uint16_t port)> &command_for)
{
    for (int tried = 0; tried < ports_tried; ++tried) {
        port_ = free_port();
        if (start_on(port_, command_for(port_))) {
            return;
        }
    }
    throw std::runtime_error("the server does not start: " + log());
}

bool ServerProcess::start_on(std::uint16_t port, ChildCommand command)
{
    std::FILE *const log_file = std::fopen(directory_.path("server.log").c_str(), "a");
    if (log_file == nullptr) {
        throw std::runtime_error("no log for the server");
    }
    command.directory = directory_.path();
    command.out = command.err = fileno(log_file);
    process_ = std::make_unique<ChildProcess>(command);
    std::fclose(log_file);
    const auto deadline = std::chrono::steady_clock::now() + longest_start;
    while (!process_->wait(milliseconds(5)) && std::chrono::steady_clock::now() < deadline) {
        if (listens(process_->pid(), port)) {
            return true;
        }
    }
    process_.reset();
    return false;
}

FileServer::FileServer()
{
    mkdir(folder().c_str(), 0700);
}

std::string FileServer::folder() const
{
    return directory().path("www");
}

NginxServer::NginxServer(const std::string &locations)
{
    const std::string www = folder();
    start([this, &www, &locations](std::uint16_t port) {
        std::ostringstream text;
        text << "daemon off;\nmaster_process off;\npid nginx.pid;\nerror_log stderr;\n"
             << "events { worker_connections 64; }\n"
             << "http {\n"
             << "access_log off;\nclient_body_temp_path body;\nproxy_temp_path proxy;\n"
             << "fastcgi_temp_path fastcgi;\nuwsgi_temp_path uwsgi;\nscgi_temp_path scgi;\n"
             << "types { text/plain txt; text/html html; }\n"
             << "server {\nlisten 127.0.0.1:" << port << ";\nroot \"" << www << "\";\n"
             << locations << "}\n}\n";
        const std::string configuration = directory().write("nginx.conf", text.str());
        return ChildCommand{
            {"nginx", "-p", directory().path(), "-e", "stderr", "-c", configuration}};
    });
}

void FileServer::add_file(const std::string &name, std::string_view content) const
{
    const std::filesystem::path path = directory().path("www/" + name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::app);
    file << content << std::flush;
    if (!file) {
        throw std::runtime_error("cannot write " + name);
    }
}

LighttpdServer::LighttpdServer()
{
    start([this](std::uint16_t port) {
        const std::string configuration = directory().write(
            "lighttpd.conf",
            "server.document-root = \"" + folder() +
                "\"\nserver.bind = \"127.0.0.1\"\nserver.port = " + std::to_string(port) +
                "\nmimetype.assign = ( \".txt\" => \"text/plain\" )\n");
        return ChildCommand{{"lighttpd", "-D", "-f", configuration}};
    });
}

BusyboxServer::BusyboxServer()
{
    start([this](std::uint16_t port) {
        return ChildCommand{
            {"busybox", "httpd", "-f", "-p", "127.0.0.1:" + std::to_string(port), "-h", folder()}};
    });
}

PythonServer::PythonServer()
{
    start([this](std::uint16_t port) {
        return ChildCommand{{"python3", "-m", "http.server", "-b", "127.0.0.1", "-d", folder(),
                             std::to_string(port)}};
    });
}

PhpServer::PhpServer()
{
    start_with(CORVELLA_SOURCE_DIRECTORY "/examples/service/service.php");
}

PhpServer::PhpServer(std::string_view page)
{
    start_with(directory().write("page.php", page));
}

void PhpServer::start_with(const std::string &script)
{
    start([this, &script](std::uint16_t port) {
        return ChildCommand{{"php", "-n", "-S", "127.0.0.1:" + std::to_string(port), "-t",
                             directory().path(), script}};
    });
}

TinyProxy::TinyProxy(ProxyRule rule, std::uint16_t upstream)
{
    start([this, rule, upstream](std::uint16_t port) {
        std::ostringstream text;
        text << "Port " << port << "\nListen 127.0.0.1\nTimeout 60\nMaxClients 20\n"
             << "LogLevel Notice\nPidFile \"" << directory().path("tinyproxy.pid") << "\"\n"
             << (rule == ProxyRule::refuse ? "Deny" : "Allow") << " 127.0.0.1\n";
        if (rule == ProxyRule::ask_for_password) {
            text << "BasicAuth someone secret\n";
        }
        if (upstream != 0) {
            text << "Upstream http 127.0.0.1:" << upstream << "\n";
        }
        const std::string configuration = directory().write("tinyproxy.conf", text.str());
        return ChildCommand{{"tinyproxy", "-d", "-c", configuration}};
    });
}

SquidProxy::SquidProxy(ProxyRule rule, std::uint16_t upstream)
{
    give_to_nobody(directory().path());
    start([this, rule, upstream](std::uint16_t port) {
        remove_shared_memory();
        service_name_ = "corvella" + std::to_string(getpid()) + "x" + std::to_string(port);
        std::ostringstream text;
        text << "http_port 127.0.0.1:" << port << "\n"
             << "pid_filename none\naccess_log none\ncache_store_log none\n"
             << "cache_log /dev/null\ncoredump_dir none\nnetdb_filename none\n"
             << "cache deny all\ncache_mem 0\nmemory_cache_shared off\nshutdown_lifetime 0\n"
             << "visible_hostname localhost\nhosts_file none\ndns_nameservers 127.0.0.1\n"
             << "udp_incoming_address 127.0.0.1\npinger_enable off\n";
        if (rule == ProxyRule::ask_for_password) {
            // Nobody is ever asked about a password, so that any program will do.
            text << "auth_param basic program /bin/cat\n"
                 << "auth_param basic children 1 startup=0 idle=1\n"
                 << "acl known proxy_auth REQUIRED\nhttp_access allow known\n";
        }
        text << "http_access " << (rule == ProxyRule::serve ? "allow" : "deny") << " all\n";
        if (upstream != 0) {
            text << "cache_peer 127.0.0.1 parent " << upstream
                 << " 0 no-query no-digest no-netdb-exchange\nnever_direct allow all\n";
        }
        give_to_nobody(directory().write("squid.conf", text.str()));
        return ChildCommand{{"squid", "-N", "-d", "1", "-n", service_name_, "-f", "squid.conf"},
                            {},
                            NULL_DEVICE,
                            NULL_DEVICE,
                            NULL_DEVICE,
                            become_nobody};
    });
}

SquidProxy::~SquidProxy()
{
    stop();
    remove_shared_memory();
}

void SquidProxy::remove_shared_memory() const
{
    std::error_code ignored;
    for (const char *const part : {"metadata", "queues", "readers"}) {
        std::filesystem::remove("/dev/shm/" + service_name_ + "-cf__" + part + ".shm", ignored);
    }
}
