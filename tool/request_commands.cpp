#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tool/commands.h"
#include "tool/details.h"
#include "tool/exchange.h"
#include "tool/output.h"
#include "tool/output_file.h"
#include "tool/password.h"
#include "tool/timing.h"
#include "tool/url.h"
#include "tool/waiting_line.h"
#include "web/web.h"

namespace {

/// A form field of the command line, divided at its first "=".
struct named_value {
    std::string name;
    const char *value;
};

void free_text(char **text)
{
    std::free(*text);
}

/// \return false, after a complaint, when an argument has no "=".
bool read_fields(const command_line &line, std::vector<named_value> &fields)
{
    for (std::size_t i = 1; i < line.operands.size(); ++i) {
        const char *const field = line.operands[i];
        const char *const equals = std::strchr(field, '=');
        if (equals == nullptr) {
            complain_of_usage("A form field is given as NAME=VALUE.");
            return false;
        }
        fields.push_back({std::string(field, equals), equals + 1});
    }
    return true;
}

bool write_reply(const command_line &line, const char *header, const char *body)
{
    // The header text ends before the line feed of its empty line.
    if (line.show_header) {
        if (!show_reply_text(std::string(header) + "\n")) {
            return false;
        }
    }
    return line.output != nullptr ? write_output_file(line.output, body) : show_reply_text(body);
}

exit_status exchange(command_line &line, const char *method, const std::vector<FormField> &fields)
{
    char *header = nullptr;
    char *body = nullptr;
    // Given back on every way out, an exception included.
    const std::unique_ptr<char *, void (*)(char **)> header_owner(&header, free_text);
    const std::unique_ptr<char *, void (*)(char **)> body_owner(&body, free_text);
    if ((line.output != nullptr && !check_output_file(line.output)) || !obtain_password(line)) {
        return EXIT_FAILED;
    }
    const proxy_arguments proxy = proxy_arguments_of(line.proxy);

    if (line.verbose) {
        show_request_details(line.operands[0], method, fields, proxy);
        begin_timing();
    }
    begin_exchange(line);
    int result =
        web_request(line.operands[0], method, static_cast<int>(fields.size()), fields.data(),
                    &header, &body, proxy.host, proxy.port, proxy.user, proxy.password);
    if (result == 0) {
        result = check_reply_status(header);
    }
    if (line.verbose) {
        end_waiting_line();
        show_reply_details(header, body);
    }
    const exit_status status = end_exchange(result, line);
    if (status != EXIT_DONE) {
        return status;
    }
    return write_reply(line, header, body) ? EXIT_DONE : EXIT_FAILED;
}

bool has_url(const command_line &line)
{
    if (line.operands.empty()) {
        complain_of_usage(std::string(line.command) + " needs a URL.");
        return false;
    }
    if (const char *const complaint = complaint_of_url(line.operands[0])) {
        complain_of_usage(complaint);
        return false;
    }
    return true;
}

} // namespace

exit_status get_command(command_line &line)
{
    if (!has_url(line)) {
        return EXIT_USAGE;
    }
    if (line.operands.size() > 1) {
        complain_of_usage("get takes one URL.");
        return EXIT_USAGE;
    }
    return exchange(line, "GET", {});
}

exit_status post_command(command_line &line)
{
    std::vector<named_value> named_values;
    if (!has_url(line) || !read_fields(line, named_values)) {
        return EXIT_USAGE;
    }
    std::vector<FormField> fields;
    fields.reserve(named_values.size());
    for (const named_value &field : named_values) {
        fields.push_back({field.name.c_str(), field.value});
    }
    return exchange(line, "POST", fields);
}
