#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <strings.h>
#include <vector>

#include "support/error.h"
#include "tool/commands.h"
#include "tool/details.h"
#include "tool/exchange.h"
#include "tool/output.h"
#include "tool/output_file.h"
#include "tool/password.h"
#include "tool/reply_check.h"
#include "tool/request_body.h"
#include "tool/timing.h"
#include "tool/url.h"
#include "web/web.h"

namespace corvella {

namespace {

/// A form field of the command line, divided at its first "=".
struct named_value {
    std::string name;
    const char *value;
};

/// What a command sends.
struct request_content {
    const char *method;
    std::vector<FormField> fields;
    const char *type; ///< of the data; null for a form
    std::string data;
};

/// The texts of a reply; each null until it came.
struct reply_texts {
    char *header;
    char *body;
};

void free_reply(const reply_texts *texts)
{
    std::free(texts->header);
    std::free(texts->body);
}

/// \return false, after a complaint, when an argument has no "=".
bool read_fields(const command_line &line, std::vector<named_value> &fields)
{
    for (std::size_t i = 1; i < line.operands.size(); ++i) {
        const char *const field = line.operands[i];
        const char *const equals = std::strchr(field, '=');
        if (equals == nullptr) {
            report_usage_error("A form field is given as NAME=VALUE.");
            return false;
        }
        fields.push_back({std::string(field, equals), equals + 1});
    }
    return true;
}

/// \return false, after a complaint, when a field is too long for a form.
bool check_fields(const std::vector<FormField> &fields)
{
    for (const FormField &field : fields) {
        const std::string error = field_error(field);
        if (!error.empty()) {
            report_usage_error(error);
            return false;
        }
    }
    return true;
}

bool write_reply(const command_line &line, const reply_texts &reply)
{
    if (line.show_header) {
        std::string header = reply.header;
        if (!header_is_broken_off(header, received_body_bytes())) {
            header += '\n'; // the text ends before the line feed of the empty line
        }
        if (!show_reply_text(header)) {
            return false;
        }
    }
    return line.output != nullptr ? write_output_file(line.output, reply.body)
                                  : show_reply_text(reply.body);
}

/// Whether a media type is that of a form, whatever its parameters are.
bool is_form_type(const std::string &type)
{
    constexpr char form_type[] = "application/x-www-form-urlencoded";
    const std::string name = type.substr(0, type.find(';'));
    const std::size_t start = std::min(name.find_first_not_of(' '), name.size());
    const std::size_t end = name.find_last_not_of(' ') + 1;
    return start < end && strcasecmp(name.substr(start, end - start).c_str(), form_type) == 0;
}

request_details details_of(const command_line &line, const request_content &request,
                           std::string &form)
{
    request_details details = {line.operands[0], request.method, "", "",
                               request.type == nullptr || is_form_type(request.type)};
    if (request.type == nullptr) {
        build_form_body(static_cast<int>(request.fields.size()), request.fields.data(),
                        details.header_lines, form);
        details.body = form;
    } else {
        details.header_lines = std::string("Content-Type: ") + request.type +
                               "\nContent-Length: " + std::to_string(request.data.size());
        details.body = request.data;
    }
    return details;
}

int send_request(const char *url, const request_content &request, const proxy_arguments &proxy,
                 reply_texts &reply)
{
    int result;
    if (request.type == nullptr) {
        result = web_request(url, request.method, static_cast<int>(request.fields.size()),
                             request.fields.data(), &reply.header, &reply.body, proxy.host,
                             proxy.port, proxy.user, proxy.password);
    } else {
        result = web_post(url, request.type, request.data, &reply.header, &reply.body, proxy.host,
                          proxy.port, proxy.user, proxy.password);
    }
    if (result == WEB_DONE) {
        note_body();
    }
    return result;
}

void show_details(const command_line &line, const reply_texts &reply)
{
    if (line.verbose) {
        show_reply_details(reply.header, reply.body);
    }
    if (line.automated) {
        print_reply_details(line.command, reply.header, reply.body);
    }
}

/// Reports what is wrong with a reply. \return whether its body is kept all the same.
bool report_faults(const command_line &line, const reply_faults &faults)
{
    for (const std::string &fault : {faults.status, faults.part}) {
        if (!fault.empty()) {
            report_error(fault);
        }
    }
    return (faults.status.empty() || line.keep_body) && (faults.part.empty() || line.keep_partial);
}

/// Checks a reply that came, and prints or writes it.
exit_status finish_reply(const command_line &line, const reply_texts &reply,
                         const reply_faults &faults)
{
    if (!report_faults(line, faults)) {
        return EXIT_FAILED;
    }
    if (is_chunked(reply.header) && !line.quiet) {
        report_message(8, "The reply's body is in chunked coding and is kept as it came.");
    }
    const bool written = write_reply(line, reply);
    return written && faults.status.empty() && faults.part.empty() ? EXIT_DONE : EXIT_FAILED;
}

exit_status exchange(command_line &line, const request_content &request)
{
    reply_texts reply = {nullptr, nullptr};
    // Frees on every return, an exception included.
    const std::unique_ptr<const reply_texts, void (*)(const reply_texts *)> owner(&reply,
                                                                                  free_reply);
    if ((line.output != nullptr && !check_output_file(line.output)) || !obtain_password(line)) {
        return EXIT_FAILED;
    }
    const proxy_arguments proxy = proxy_arguments_of(line.proxy);
    std::string form;
    const request_details details = details_of(line, request, form);
    if (line.verbose) {
        show_request_details(details, proxy);
    }
    const progress_facts facts = {
        proxy.host != nullptr ? proxy.host : host_as_typed(line.operands[0]),
        std::strcmp(request.method, "POST") == 0 ? details.body.size() : 0, &reply.header};
    const int result = run_exchange(
        line, facts, [&] { return send_request(line.operands[0], request, proxy, reply); });
    if (result != WEB_DONE) {
        show_details(line, reply);
        return report_exchange(result);
    }
    // Before anything else may set another error text.
    const reply_faults faults = check_reply(reply.header, reply.body, received_body_bytes());
    show_details(line, reply);
    return finish_reply(line, reply, faults);
}

bool has_url(const command_line &line)
{
    if (line.operands.empty()) {
        report_usage_error(std::string(line.command) + " needs a URL.");
        return false;
    }
    if (const char *const complaint = url_error(line.operands[0])) {
        report_usage_error(complaint);
        return false;
    }
    return true;
}

/// Whether a media type can be sent as a header line.
bool is_media_type(const char *type)
{
    const char *c = type;
    while (*c != '\0' && static_cast<unsigned char>(*c) >= ' ' && *c != 0x7f) {
        ++c;
    }
    return *c == '\0' && c != type;
}

exit_status post_data(command_line &line)
{
    request_content request = {"POST", {}, "application/octet-stream", ""};
    if (line.type != nullptr) {
        request.type = line.type;
    }
    if (!is_media_type(request.type)) {
        report_usage_error("-type takes a media type without control characters.");
        return EXIT_USAGE;
    }
    return read_request_body(line.data, request.data) ? exchange(line, request) : EXIT_FAILED;
}

} // namespace

exit_status get_command(command_line &line)
{
    if (!has_url(line)) {
        return EXIT_USAGE;
    }
    if (line.operands.size() > 1) {
        report_usage_error("get takes one URL.");
        return EXIT_USAGE;
    }
    return exchange(line, {"GET", {}, nullptr, ""});
}

exit_status post_command(command_line &line)
{
    std::vector<named_value> named_values;
    if (!has_url(line) || !read_fields(line, named_values)) {
        return EXIT_USAGE;
    }
    if (line.data != nullptr) {
        return post_data(line);
    }
    std::vector<FormField> fields;
    fields.reserve(named_values.size());
    for (const named_value &field : named_values) {
        fields.push_back({field.name.c_str(), field.value});
    }
    if (!check_fields(fields)) {
        return EXIT_USAGE;
    }
    return exchange(line, {"POST", fields, nullptr, ""});
}

} // namespace corvella
