// A stand-in of the maker's web service that needs nothing but a compiler. It answers as
// service.php does. Usage: service It listens on a free port of 127.0.0.1, prints "port NUMBER" and
// serves until it is killed.
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t longest_request = 1 << 20;
constexpr char newest_version[] = "5.2";

using Fields = std::vector<std::pair<std::string, std::string>>;

std::string lower_case(std::string text)
{
    for (char &c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return text;
}

/// Returns the text between \p from and the next \p end, or the rest if there is none.
std::string text_until(const std::string &text, std::size_t from, const char *end)
{
    return text.substr(from, text.find(end, from) - from);
}

/// Whether the header and as many bytes of the body as it announces have come.
bool is_complete(const std::string &request)
{
    const std::size_t header_end = request.find("\r\n\r\n");
    if (header_end == std::string::npos) {
        return request.size() > longest_request;
    }
    const std::string header = lower_case(request.substr(0, header_end));
    const std::string name = "\r\ncontent-length:";
    const std::size_t place = header.find(name);
    const long length =
        place == std::string::npos ? 0 : std::atol(header.c_str() + place + name.size());
    const std::size_t body_size = request.size() - header_end - 4;
    return length <= 0 || body_size >= static_cast<std::size_t>(length) ||
           body_size > longest_request;
}

std::string receive_request(int peer)
{
    std::string request;
    char chunk[4096];
    while (!is_complete(request)) {
        const ssize_t received = recv(peer, chunk, sizeof chunk, 0);
        if (received <= 0) {
            break;
        }
        request.append(chunk, static_cast<std::size_t>(received));
    }
    return request;
}

std::string decoded(const std::string &text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            result += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            result += text[i] == '+' ? ' ' : text[i];
        }
    }
    return result;
}

Fields fields_of(const std::string &body)
{
    Fields fields;
    for (std::size_t start = 0; start < body.size();) {
        const std::string field = text_until(body, start, "&");
        start += field.size() + 1;
        const std::string name = text_until(field, 0, "=");
        const std::string value = name.size() < field.size() ? field.substr(name.size() + 1) : "";
        fields.emplace_back(decoded(name), decoded(value));
    }
    return fields;
}

std::string value_of(const Fields &fields, const std::string &name)
{
    for (const auto &[field, value] : fields) {
        if (field == name) {
            return value;
        }
    }
    return "?";
}

std::string update_reply(const Fields &fields)
{
    const std::string newest = newest_version;
    const bool is_newest =
        std::atof(value_of(fields, "version").c_str()) >= std::atof(newest_version);
    const std::string message = is_newest ? " is up to date.\n"
                                          : " " + newest + " is available; you have " +
                                                value_of(fields, "version_name") + ".\n";
    return "Version: " + newest + "\nURL: http://www.morvane.example/download.html\nButton: " +
           (is_newest ? "Close" : "Download") + "\nMessage: " + value_of(fields, "product") +
           message;
}

/// The path of a request target, which names the host too when the request goes through a proxy.
std::string path_of(const std::string &target)
{
    const std::size_t scheme_end = target.find("://");
    const std::size_t start =
        scheme_end == std::string::npos ? 0 : target.find('/', scheme_end + 3);
    return start == std::string::npos ? "/" : text_until(target, start, "?");
}

std::string reply_to(const std::string &request)
{
    const std::string method = text_until(request, 0, " ");
    const std::string line = text_until(request, 0, "\r\n");
    const std::string path =
        path_of(method.size() < line.size() ? text_until(line, method.size() + 1, " ") : "/");
    const std::size_t header_end = request.find("\r\n\r\n");
    const Fields fields =
        fields_of(header_end == std::string::npos ? "" : request.substr(header_end + 4));
    if (path == "/version-update.php") {
        return update_reply(fields);
    }
    std::string reply = method + " " + path + "\n";
    for (const auto &[name, value] : fields) {
        reply.append(name).append("=").append(value).append("\n");
    }
    return reply;
}

void serve(int peer)
{
    const timeval limit = {10, 0};
    setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    setsockopt(peer, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    const std::string reply = reply_to(receive_request(peer));
    const std::string whole = "HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " +
                              std::to_string(reply.size()) + "\r\n\r\n" + reply;
    for (std::size_t sent = 0; sent < whole.size();) {
        const ssize_t taken = send(peer, whole.data() + sent, whole.size() - sent, 0);
        if (taken <= 0) {
            break;
        }
        sent += static_cast<std::size_t>(taken);
    }
    shutdown(peer, SHUT_WR);
    close(peer);
}

/// Opens a listening socket on a free port, which it stores in \p address.
/// \return the socket, or -1.
int listen_on_free_port(sockaddr_in &address)
{
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (listener < 0 || bind(listener, generic, size) != 0 || listen(listener, 16) != 0 ||
        getsockname(listener, generic, &size) != 0) {
        return -1;
    }
    return listener;
}

} // namespace

int main()
{
    std::signal(SIGPIPE, SIG_IGN);
    sockaddr_in address;
    const int listener = listen_on_free_port(address);
    if (listener < 0) {
        std::perror("service");
        return 1;
    }
    std::printf("port %d\n", ntohs(address.sin_port));
    std::fflush(stdout);
    for (;;) {
        const int peer = accept(listener, nullptr, nullptr);
        if (peer >= 0) {
            serve(peer);
        } else if (errno != EINTR && errno != ECONNABORTED) {
            std::perror("service");
            return 1;
        }
    }
}
