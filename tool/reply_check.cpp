#include "tool/reply_check.h"

#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "web/web.h"

namespace corvella {

namespace {

constexpr int value_size = 4096;

/// The broken-off header's fault; "" for a complete one. \param kept_error the error text that the
/// web client kept while it received the header
std::string header_fault(const std::string &header, std::size_t received,
                         const std::string &kept_error)
{
    if (!kept_error.empty()) {
        return kept_error;
    }
    if (!header_is_broken_off(header, received)) {
        return "";
    }
    if (received > 0) {
        return "The reply's header contains a NUL byte.";
    }
    if (header.empty()) {
        return "The web site closed the connection without a reply.";
    }
    return "The reply was broken off in its header.";
}

/// The fault of a bad status, with the place that the reply refers to.
std::string status_fault(const char *header)
{
    if (check_reply_status(header) == 0) {
        return "";
    }
    std::string fault = web_last_error();
    char location[value_size];
    if (reply_status(header) != 0 &&
        find_reply_header(header, "Location", location, sizeof location) != nullptr &&
        location[0] != '\0') {
        fault += ". It refers to " + std::string(location);
    }
    return fault;
}

bool ends_in_crlf(const std::string &header)
{
    const std::size_t length = header.size();
    return length >= 2 && header.compare(length - 2, 2, "\r\n") == 0;
}

bool has_no_body(int status)
{
    return status == 204 || status == 304;
}

std::string body_fault(const char *header, const char *body, std::size_t received)
{
    const std::size_t kept = std::strlen(body);
    const std::string lost = received > kept ? std::to_string(received - kept) : "";
    if (has_no_body(reply_status(header))) {
        return "";
    }
    if (check_reply_complete(header, body) != 0) {
        const std::string fault = web_last_error();
        return lost.empty() ? fault : fault + " (" + lost + " lost to a NUL byte)";
    }
    if (!lost.empty()) {
        return "Incomplete reply from web site: " + lost + " bytes lost to a NUL byte";
    }
    return "";
}

} // namespace

reply_faults check_reply(const char *header, const char *body, std::size_t received)
{
    const std::string broken = header_fault(header, received, web_last_error());
    if (!broken.empty()) {
        return {"", broken};
    }
    return {status_fault(header), body_fault(header, body, received)};
}

bool header_is_broken_off(const std::string &header, std::size_t received)
{
    if (received == 0 && ends_in_crlf(header)) {
        return true;
    }
    const std::size_t length = header.size();
    const bool ends_in_return = length > 0 && header[length - 1] == '\r';
    const std::size_t end = ends_in_return ? length - 1 : length;
    return end == 0 || header[end - 1] != '\n';
}

int reply_status(const char *header)
{
    const char *const protocol = std::strstr(header, "HTTP/");
    if (protocol == nullptr) {
        return 0;
    }
    // As check_reply_status() reads it: "major.minor code".
    char *end;
    std::strtol(protocol + std::strlen("HTTP/"), &end, 10);
    if (*end != '.') {
        return 0;
    }
    std::strtol(end + 1, &end, 10);
    const long status = std::strtol(end, &end, 10);
    return status >= 0 && status <= 999 ? static_cast<int>(status) : 0;
}

bool is_chunked(const char *header)
{
    char coding[value_size];
    if (find_reply_header(header, "Transfer-Encoding", coding, sizeof coding) == nullptr) {
        return false;
    }
    // It is always the last coding.
    constexpr std::size_t length = sizeof "chunked" - 1;
    const std::size_t end = std::strlen(coding);
    return end >= length && strcasecmp(coding + end - length, "chunked") == 0;
}

} // namespace corvella
