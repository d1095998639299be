#include "tool/url.h"

#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "support/c-utils.h"

namespace corvella {

namespace {

/// What may follow the host and its port.
constexpr char after_host[] = "/?#";
constexpr char host_characters[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-.";

/// Blanks and control bytes would divide a request line.
bool divides_a_line(char c)
{
    const unsigned char byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte == 0x7f;
}

bool is_one_word(const char *url)
{
    const char *c = url;
    while (*c != '\0' && !divides_a_line(*c)) {
        ++c;
    }
    return *c == '\0' && c != url;
}

/// Whether the part in front of the path has a user name, also without a scheme.
bool names_user(const char *url)
{
    const char *const scheme_end = url + std::strcspn(url, ":/?#");
    const char *const slashes = *scheme_end == ':' ? scheme_end + 1 : url;
    const char *const authority = std::strncmp(slashes, "//", 2) == 0 ? slashes + 2 : url;
    return authority[std::strcspn(authority, "@/?#")] == '@';
}

/// \return what is behind the protocol and its slashes; null for another protocol than HTTP. As the
/// request does, takes a URL without a colon for one without a protocol.
const char *after_scheme(const char *url)
{
    if (std::strchr(url, ':') != nullptr) {
        if (strncasecmp(url, "http:", 5) != 0) {
            return nullptr;
        }
        url += 5;
    }
    return std::strncmp(url, "//", 2) == 0 ? url + 2 : url;
}

bool is_port(const std::string &text)
{
    constexpr std::size_t most_digits = 5;
    if (text.size() > most_digits || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    const long port = std::strtol(text.c_str(), nullptr, 10);
    return port >= 1 && port <= greatest_port;
}

} // namespace

const char *url_error(const char *url)
{
    if (!is_one_word(url)) {
        return "A URL has no blanks and no control characters, and is not empty.";
    }
    if (names_user(url)) {
        return "A URL with a user name is refused; use -user and -pass.";
    }
    const char *const host = after_scheme(url);
    if (host == nullptr) {
        return nullptr;
    }
    const std::size_t host_length = std::strspn(host, host_characters);
    const char *end = host + host_length;
    if (*end == ':') {
        const std::size_t port_length = std::strcspn(end + 1, after_host);
        if (!is_port({end + 1, port_length})) {
            return "The port of a URL is a number from 1 to 65535.";
        }
        end += 1 + port_length;
    }
    // Anywhere else the request would end the host, and go to one that nobody meant.
    if (host_length == 0 || std::strcspn(end, after_host) != 0) {
        return "The host of a URL is a name or an address of ASCII letters, digits, '-' and '.'.";
    }
    return nullptr;
}

std::string without_fragment(const char *url)
{
    return is_one_word(url) ? std::string(url, std::strcspn(url, "#")) : url;
}

std::string host_of_url(const char *url)
{
    std::string name = host_as_typed(url);
    string_to_upper(name.c_str(), name.data());
    return name;
}

std::string host_as_typed(const char *url)
{
    const char *const host = after_scheme(url);
    return host == nullptr ? "" : std::string(host, std::strspn(host, host_characters));
}

} // namespace corvella
