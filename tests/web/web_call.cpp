#include "tests/web/web_call.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>

#include "web/web.h"

namespace {

std::optional<std::string> taken(char *text)
{
    if (text == nullptr) {
        return std::nullopt;
    }
    std::string copy(text);
    std::free(text);
    return copy;
}

} // namespace

WebOutcome run(const WebCall &call)
{
    char *header = nullptr;
    char *body = nullptr;
    const int result = web_transaction(call.scheme, call.host, call.target, call.port, call.method,
                                       call.extra_headers, call.body, &header, &body,
                                       call.proxy_host, call.proxy_port, call.user, call.password);
    return {result, taken(header), taken(body), web_last_error()};
}

WebOutcome run_request(const char *url, const WebCall &call)
{
    char *header = nullptr;
    char *body = nullptr;
    const FormField field = {"q", "1"};
    const int result = web_request(url, call.method, 1, &field, &header, &body, call.proxy_host,
                                   call.proxy_port, call.user, call.password);
    return {result, taken(header), taken(body), web_last_error()};
}

std::string request_text(const std::string &first_line, const std::string &host,
                         const std::string &extra, const std::string &authorization,
                         const std::string &body)
{
    return first_line +
           "\r\n"
           "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n"
           "Accept-Language: en-us\r\n"
           "User-Agent: Morvane_Auto1\r\n" +
           referer_line() + extra + "Host: " + host + "\r\n" + authorization + "\r\n" + body;
}

std::string referer_line()
{
    return "Referer: www." CORVELLA_MAKER_DOMAIN "\r\n";
}

std::string code_text(int error_number)
{
    return "code " + std::to_string(error_number) + ": " + std::strerror(error_number);
}

std::size_t open_descriptor_count()
{
    DIR *const directory = opendir("/dev/fd");
    std::size_t count = 0;
    while (readdir(directory) != nullptr) {
        ++count;
    }
    closedir(directory);
    return count;
}
