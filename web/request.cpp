#include "web/request.h"

#include <string>

#include "support/c-utils/characters.h"
#include "support/c-utils/decimal.h"
#include "web/client_state.h"
#include "web/transaction.h"

namespace {

constexpr std::uint16_t default_port = 80;

/// The parts of a URL that the connection needs, in upper case.
struct url_parts {
    std::string scheme;
    std::string host;
    std::uint16_t port;
};

std::string upper_case(std::string text)
{
    for (char &c : text) {
        c = corvella::to_upper(c);
    }
    return text;
}

bool belongs_to_host(char c)
{
    return corvella::is_ascii_alphanumeric(c) || c == '-' || c == '.' || c == ':';
}

/// Takes the scheme off \p rest, "HTTP" when it has none.
std::string take_scheme(std::string &rest)
{
    const std::size_t colon = rest.find(':');
    if (colon == std::string::npos) {
        return "HTTP";
    }
    std::string scheme = rest.substr(0, colon);
    rest.erase(0, colon + 1);
    return scheme;
}

url_parts split_url(const char *url)
{
    url_parts parts;
    std::string rest = upper_case(url);
    parts.scheme = take_scheme(rest);
    const std::size_t start = rest.compare(0, 2, "//") == 0 ? 2 : 0;
    std::size_t end = start;
    while (end < rest.size() && belongs_to_host(rest[end])) {
        ++end;
    }
    parts.host = rest.substr(start, end - start);
    parts.port = default_port;
    const std::size_t colon = parts.host.find(':');
    if (colon != std::string::npos) {
        parts.port =
            static_cast<std::uint16_t>(corvella::decimal_or_zero(parts.host.c_str() + colon + 1));
        parts.host.erase(colon);
    }
    return parts;
}

} // namespace

int web_request(const char *url, const char *method, int field_count, const FormField *fields,
                char **header_out, char **body_out, const char *proxy_host,
                std::uint16_t proxy_port, const char *user, const char *password)
{
    corvella::clear_web_error();
    const url_parts parts = split_url(url);
    std::string header_text;
    std::string body;
    build_form_body(field_count, fields, header_text, body);
    return web_transaction(parts.scheme.c_str(), parts.host.c_str(), url, parts.port, method,
                           header_text.c_str(), body, header_out, body_out, proxy_host, proxy_port,
                           user, password);
}

int web_post(const char *url, const char *content_type, std::string_view body, char **header_out,
             char **body_out, const char *proxy_host, std::uint16_t proxy_port, const char *user,
             const char *password)
{
    corvella::clear_web_error();
    const url_parts parts = split_url(url);
    const std::string header_text = std::string("Content-Type: ") + content_type +
                                    "\r\nContent-Length: " + std::to_string(body.size());
    return web_transaction(parts.scheme.c_str(), parts.host.c_str(), url, parts.port, "POST",
                           header_text.c_str(), body, header_out, body_out, proxy_host, proxy_port,
                           user, password);
}
