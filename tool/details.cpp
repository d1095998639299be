#include "tool/details.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/output.h"
#include "tool/printable.h"
#include "tool/reply_check.h"
#include "tool/shown_body.h"
#include "tool/timing.h"
#include "tool/url.h"
#include "web/request_lines.h"

namespace corvella {

namespace {

/// The header lines that every request has, each after a line feed.
std::string fixed_lines()
{
    std::string lines;
    for (const std::string_view line : corvella::fixed_request_lines) {
        lines += "\n" + std::string(line.substr(0, line.size() - 2));
    }
    return lines;
}

/// Shows each line of a text, \p mark in front of it.
void show_lines(char mark, const std::string &text)
{
    for (const std::string &line : lines_of(text)) {
        std::fprintf(stderr, "%c %s\n", mark, sanitized_for(STDERR_FILENO, line).c_str());
    }
}

std::size_t length_of(const char *text)
{
    return text != nullptr ? std::strlen(text) : 0;
}

void show_body(const request_details &request, const char *password)
{
    show_lines('}', shown_body(request.body, request.is_form, password));
    if (request.body.size() > most_shown_of_body) {
        print_indented("* the first %zu of %zu bytes of the body are shown\n", most_shown_of_body,
                       request.body.size());
    }
}

std::string seconds_text(double seconds)
{
    char text[32];
    format_string_bounded(text, sizeof text, "%.3f", seconds);
    return text;
}

} // namespace

void show_request_details(const request_details &request, const proxy_arguments &proxy)
{
    const std::string host = host_of_url(request.url);
    if (host.empty()) {
        return;
    }
    if (proxy.host != nullptr) {
        show_lines('*', "Through the proxy " + std::string(proxy.host) + ", port " +
                            std::to_string(proxy.port));
    }
    show_lines('>', std::string(request.method) + " " + request.url + " HTTP/1.0" + fixed_lines());
    show_lines('>', request.header_lines + "\nHost: " + host);
    if (proxy.user != nullptr && proxy.password != nullptr) {
        show_lines('>', "Authorization: Basic ****");
    }
    show_body(request, proxy.password);
}

void show_reply_details(const char *header, const char *body)
{
    for (const step_time &step : step_times()) {
        print_indented("* %s: %.3f s\n", step.name, step.seconds);
    }
    if (header != nullptr) {
        show_lines('<', header);
    }
    print_indented("* in all: %.3f s, %zu bytes of header, %zu bytes of body\n", exchange_seconds(),
                   length_of(header), length_of(body));
}

void print_reply_details(const char *tag, const char *header, const char *body)
{
    if (header != nullptr) {
        if (const int status = reply_status(header)) {
            print_named_result(tag, "Status", std::to_string(status));
        }
        print_named_result(tag, "Header size", std::to_string(std::strlen(header)));
    }
    if (body != nullptr) {
        print_named_result(tag, "Body size", std::to_string(std::strlen(body)));
    }
    const std::vector<step_time> steps = step_times();
    for (const step_time &step : steps) {
        print_named_result(tag, (std::string("Seconds for ") + step.name).c_str(),
                           seconds_text(step.seconds));
    }
    if (!steps.empty()) {
        print_named_result(tag, "Seconds in all", seconds_text(exchange_seconds()));
    }
}

} // namespace corvella
