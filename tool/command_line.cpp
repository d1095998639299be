#include "tool/command_line.h"

#include <cstring>
#include <string>

#include "support/c-utils.h"
#include "support/error.h"
#include "tool/command_line_checks.h"
#include "tool/command_line_scan.h"
#include "tool/option_table.h"
#include "tool/output.h"
#include "tool/password.h"
#include "tool/url.h"

namespace corvella {

namespace {

/// Where the argument of an option goes that is no more than remembered; null for the others.
const char **place_of_argument(command_line &line, given_options &given, int code)
{
    switch (code) {
    case OPTION_PROXY:
        return &given.proxy;
    case OPTION_PROXY_USER:
        return &given.proxy_user;
    case OPTION_USER:
        return &given.user;
    case OPTION_MAX_TIME:
        return &given.max_time;
    case OPTION_DATA:
        return &line.data;
    case OPTION_TYPE:
        return &line.type;
    case OPTION_OUTPUT:
        return &line.output;
    case OPTION_PRODUCT:
        return &line.update.product;
    case OPTION_PRODUCTLINE:
        return &line.update.productline;
    case OPTION_VERSION:
        return &line.update.version;
    case OPTION_VERSION_NAME:
        return &line.update.version_name;
    case OPTION_OS:
        return &line.update.os;
    case OPTION_OS_VERSION:
        return &line.update.os_version;
    case OPTION_MACHINE_ID:
        return &line.update.machine_id;
    case OPTION_ARCH:
        return &line.update.arch;
    default:
        return nullptr;
    }
}

/// \return the switch that an option without an argument sets; null for the others.
bool *place_of_switch(command_line &line, int code)
{
    switch (code) {
    case OPTION_HEADER:
        return &line.show_header;
    case OPTION_KEEP_PARTIAL:
        return &line.keep_partial;
    case OPTION_KEEP_BODY:
        return &line.keep_body;
    case OPTION_AUTOMATED:
        return &line.automated;
    case OPTION_QUIET:
        return &line.quiet;
    case OPTION_VERBOSE:
        return &line.verbose;
    case OPTION_HELP:
        return &line.show_help;
    case OPTION_SHOW_VERSION:
        return &line.show_version;
    case OPTION_OPEN:
        return &line.update.open_url;
    default:
        return nullptr;
    }
}

/// \return where the password of an option goes; null for the others.
given_secret *place_of_secret(given_options &given, int code)
{
    if (code == OPTION_PROXY_PASS) {
        return &given.proxy_pass;
    }
    return code == OPTION_PASS ? &given.pass : nullptr;
}

/// Copies the password and blanks it where the system shows it.
void take_secret(given_secret &secret, char *argument)
{
    const std::size_t length = std::strlen(argument);
    secret.given = true;
    secret.on_input = std::strcmp(argument, "-") == 0;
    secret.too_long = length >= sizeof secret.text;
    copy_string_bounded(secret.text, argument, sizeof secret.text);
    std::memset(argument, '*', length);
}

void store_option(command_line &line, given_options &given, const scanned_argument &option)
{
    if (const char **const argument = place_of_argument(line, given, option.code)) {
        *argument = option.argument;
    } else if (bool *const place = place_of_switch(line, option.code)) {
        *place = true;
    } else if (given_secret *const secret = place_of_secret(given, option.code)) {
        take_secret(*secret, option.argument);
    }
    given.options.push_back(static_cast<option_meaning>(option.code));
}

void store_operand(command_line &line, const char *operand)
{
    if (line.command == nullptr) {
        line.command = operand;
    } else {
        line.operands.push_back(operand);
    }
}

/// Whether the command is `update`, whose "-version" differs from the program's. Reads the line
/// with update's options; the first operand is the command.
bool command_is_update(int count, char **vector)
{
    const std::vector<long_option> table = parser_table(true);
    argument_scan scan = begin_scan(count, vector, table);
    scanned_argument argument = next_argument(scan);
    while (argument.kind == ARGUMENT_OPTION || argument.kind == ARGUMENT_ERROR) {
        argument = next_argument(scan);
    }
    return argument.kind == ARGUMENT_OPERAND &&
           meaning_of_command(argument.element) == COMMAND_UPDATE;
}

/// "-version=" may come from an empty variable; the parser would take the next element.
bool is_version_without_number(const scanned_argument &option)
{
    return option.code == OPTION_VERSION && option.argument != nullptr &&
           option.element[std::strlen(option.element) - 1] == '=';
}

/// Reads everything also after an error: passwords are still blanked and -automated still counts.
/// \return the first error; empty if there is none.
std::string read_arguments(int count, char **vector, command_line &line, given_options &given)
{
    const std::vector<long_option> table = parser_table(command_is_update(count, vector));
    argument_scan scan = begin_scan(count, vector, table);
    std::string error;
    scanned_argument argument = next_argument(scan);
    for (; argument.kind != ARGUMENT_END; argument = next_argument(scan)) {
        if (argument.kind == ARGUMENT_OPERAND) {
            store_operand(line, argument.element);
        } else if (argument.kind == ARGUMENT_OPTION && !is_version_without_number(argument)) {
            store_option(line, given, argument);
        } else if (error.empty()) {
            error = argument.kind == ARGUMENT_ERROR ? argument.error
                                                    : "option -version needs an argument";
        }
    }
    return error;
}

bool requests_url(const command_line &line)
{
    if (line.operands.empty()) {
        return false;
    }
    const command_meaning command = meaning_of_command(line.command);
    return command == COMMAND_GET || command == COMMAND_POST;
}

bool read_given(int count, char **vector, command_line &line, given_options &given)
{
    const std::string error = read_arguments(count, vector, line, given);
    if (line.automated) {
        frame_output();
    }
    if (line.output != nullptr && std::strcmp(line.output, "-") == 0) {
        line.output = nullptr;
    }
    if (requests_url(line)) {
        line.url = without_fragment(line.operands[0]);
        line.operands[0] = line.url.c_str();
    }
    if (!error.empty()) {
        report_usage_error(error);
        return false;
    }
    return check_options(line, given);
}

} // namespace

bool read_command_line(int count, char **vector, command_line &line)
{
    line = {};
    if (count == 0) {
        return false; // a program that was started without even its name
    }
    given_options given = {};
    const bool valid = read_given(count, vector, line, given);
    wipe(given.proxy_pass.text, sizeof given.proxy_pass.text);
    wipe(given.pass.text, sizeof given.pass.text);
    return valid;
}

void report_usage_error(const std::string &complaint)
{
    report_error(complaint);
    print_indented("Try 'corvella -help'.\n");
}

} // namespace corvella
