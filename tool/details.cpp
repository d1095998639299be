#include "tool/details.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/printable.h"
#include "tool/timing.h"
#include "tool/url.h"

namespace {

// As send_request() sends them.
constexpr char fixed_lines[] = "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\n"
                               "Accept-Language: en-us\n"
                               "User-Agent: Morvane_Auto1\n"
                               "Referer: www." CORVELLA_MAKER_DOMAIN;

/// Shows each line of a text, \p mark before it.
void show_lines(char mark, const std::string &text)
{
    for (const std::string &line : lines_of(text)) {
        std::fprintf(stderr, "%c %s\n", mark, text_for(STDERR_FILENO, line).c_str());
    }
}

std::size_t length_of(const char *text)
{
    return text != nullptr ? std::strlen(text) : 0;
}

/// The lines of a form, from the web client itself.
std::string form_lines(const std::vector<FormField> &fields)
{
    std::string lines;
    std::string body;
    build_form_body(static_cast<int>(fields.size()), fields.data(), lines, body);
    return lines;
}

} // namespace

void show_request_details(const char *url, const char *method, const std::vector<FormField> &fields,
                          const proxy_arguments &proxy)
{
    const std::string host = host_of_url(url);
    if (host.empty()) {
        return;
    }
    if (proxy.host != nullptr) {
        show_lines('*', "Through the proxy " + std::string(proxy.host) + ", port " +
                            std::to_string(proxy.port));
    }
    show_lines('>', std::string(method) + " " + url + " HTTP/1.0\n" + fixed_lines);
    show_lines('>', form_lines(fields) + "\nHost: " + host);
    if (proxy.user != nullptr && proxy.password != nullptr) {
        show_lines('>', "Authorization: Basic ****");
    }
}

void show_reply_details(const char *header, const char *body)
{
    const double seconds = static_cast<double>(elapsed_time());
    end_timing(body != nullptr);
    if (header != nullptr) {
        show_lines('<', header);
    }
    print_indented("* in all: %.3f s, %zu bytes of header, %zu bytes of body\n", seconds,
                   length_of(header), length_of(body));
}
