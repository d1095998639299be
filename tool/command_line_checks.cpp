#include "tool/command_line_checks.h"

#include <cstring>
#include <string>
#include <unistd.h>
#include <utility>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/decimal.h"
#include "tool/terminal.h"
#include "tool/url.h"
#include "tool/usage_text.h"

namespace corvella {

namespace {

constexpr double least_seconds = 0.001;
constexpr double most_seconds = 1'000'000;

bool fail(const std::string &complaint)
{
    report_usage_error(complaint);
    return false;
}

bool check_max_time(command_line &line, const given_options &given)
{
    if (given.max_time == nullptr) {
        return true;
    }
    line.max_time_text = given.max_time;
    const bool is_number = parse_decimal(given.max_time, line.max_time);
    return (is_number && line.max_time >= least_seconds && line.max_time <= most_seconds) ||
           fail("-max-time takes seconds from 0.001 to 1000000.");
}

bool check_data(const command_line &line)
{
    if (line.type != nullptr && line.data == nullptr) {
        return fail("-type needs -data.");
    }
    const bool has_fields = line.operands.size() > 1;
    return line.data == nullptr || !has_fields || fail("-data and form fields exclude each other.");
}

bool reads_input(const given_secret &secret)
{
    return secret.given && secret.on_input;
}

/// Standard input can be read for one purpose only.
bool check_input(const command_line &line, const given_options &given)
{
    const bool asks_password = given.user != nullptr && !given.pass.given;
    const int readers = (line.data != nullptr && std::strcmp(line.data, "-") == 0) +
                        reads_input(given.proxy_pass) + reads_input(given.pass) + asks_password;
    return readers <= 1 || fail("Standard input can be read for one option only.");
}

/// Whether the Authorization header can carry the name (RFC 7617), and the record can hold it.
bool is_server_user(const char *name)
{
    const std::size_t length = std::strlen(name);
    return length >= 1 && length < sizeof ProxySettings::user && std::strchr(name, ':') == nullptr;
}

bool check_server_login(const given_options &given)
{
    if (given.user == nullptr) {
        return !given.pass.given || fail("-pass needs -user.");
    }
    if (given.proxy_user != nullptr || given.proxy_pass.given) {
        return fail("-user excludes -proxy-user and -proxy-pass.");
    }
    if (!is_server_user(given.user)) {
        return fail("-user takes a name of 1 to 255 bytes without a colon.");
    }
    const bool fits = !given.pass.too_long && given.pass.text[0] != '\0';
    return !given.pass.given || fits || fail("-pass takes a password of 1 to 255 bytes.");
}

/// \return false when -proxy is malformed.
bool fill_proxy(command_line &line, const given_options &given)
{
    const bool takes_password = given.proxy_pass.given && !given.proxy_pass.on_input;
    const int result = fill_proxy_settings(&line.proxy, given.proxy, given.proxy_user,
                                           takes_password ? given.proxy_pass.text : nullptr);
    if (given.proxy == nullptr) {
        return true;
    }
    const std::int32_t port = line.proxy.proxy_port;
    return result == 0 && line.proxy.proxy_host[0] != '\0' && port >= 1 && port <= greatest_port;
}

/// Puts the credentials where the request reads them, whoever they are for.
void fill_login(command_line &line, const given_options &given)
{
    if (given.user == nullptr) {
        line.reads_password = reads_input(given.proxy_pass) && line.proxy.user[0] != '\0';
        return;
    }
    copy_string_bounded(line.proxy.user, given.user, sizeof line.proxy.user);
    line.reads_password = !given.pass.given || given.pass.on_input;
    if (!line.reads_password) {
        copy_string_bounded(line.proxy.password, given.pass.text, sizeof line.proxy.password);
    }
}

bool check_places(const command_line &line, const given_options &given)
{
    for (const option_meaning option : given.options) {
        if (const char *const name = misplaced_option(option, line.command)) {
            return fail(std::string("-") + name + " does not go with " + line.command + ".");
        }
    }
    return true;
}

bool is_empty(const char *text)
{
    return text != nullptr && text[0] == '\0';
}

/// An empty argument may come from an unset variable.
bool check_empty_arguments(const command_line &line)
{
    const std::pair<const char *, const char *> arguments[] = {
        {"output", line.output},
        {"data", line.data},
        {"product", line.update.product},
        {"productline", line.update.productline},
    };
    for (const auto &[name, argument] : arguments) {
        if (is_empty(argument)) {
            return fail(std::string("-") + name + " takes a name that is not empty.");
        }
    }
    return true;
}

bool check_command_options(command_line &line, const given_options &given)
{
    if (!check_places(line, given) || !check_empty_arguments(line) ||
        !check_max_time(line, given) || !check_data(line) || !check_server_login(given) ||
        !check_input(line, given)) {
        return false;
    }
    fill_login(line, given);
    return true;
}

} // namespace

bool check_options(command_line &line, const given_options &given)
{
    if (!fill_proxy(line, given)) {
        report_message(9, "-proxy takes host:port, with a port from 1 to 65535.");
        print_indented("%s", usage_text(terminal_columns(STDERR_FILENO)).c_str());
        return false;
    }
    if (line.quiet && line.verbose) {
        return fail("-quiet and -verbose exclude each other.");
    }
    if (line.show_help || line.command == nullptr ||
        meaning_of_command(line.command) == NO_COMMAND) {
        return true; // an unknown command is reported later
    }
    return check_command_options(line, given);
}

} // namespace corvella
