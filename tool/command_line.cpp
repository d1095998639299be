#include "tool/command_line.h"

#include <cstring>
#include <string>
#include <unistd.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "support/options.h"
#include "tool/command_line_checks.h"
#include "tool/option_table.h"
#include "tool/output.h"
#include "tool/password.h"
#include "tool/terminal.h"
#include "tool/usage_text.h"

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

/// \return false for an option that the parser has already complained of.
bool take_option(command_line &line, given_options &given, int code)
{
    if (const char **const argument = place_of_argument(line, given, code)) {
        *argument = option_argument;
    } else if (bool *const place = place_of_switch(line, code)) {
        *place = true;
    } else if (given_secret *const secret = place_of_secret(given, code)) {
        take_secret(*secret, option_argument);
    } else {
        return false;
    }
    given.options.push_back(static_cast<option_meaning>(code));
    return true;
}

/// Whether the command is `update`, whose "-version" differs from the program's. Reads the line
/// with update's options; the first operand is the command.
bool command_is_update(int count, char **vector)
{
    const std::vector<long_option> table = parser_table(true);
    std::vector<char *> elements(vector, vector + count + 1); // the scan changes their order
    option_index = 0;
    option_errors = 0;
    while (get_long_options_only(count, elements.data(), "", table.data(), nullptr) != -1) {
    }
    option_errors = 1;
    return option_index < count &&
           meaning_of_command(elements[static_cast<std::size_t>(option_index)]) == COMMAND_UPDATE;
}

bool read_options(int count, char **vector, command_line &line, given_options &given)
{
    const std::vector<long_option> table = parser_table(command_is_update(count, vector));
    option_index = 0;
    int code;
    while ((code = get_long_options_only(count, vector, "", table.data(), nullptr)) != -1) {
        if (!take_option(line, given, code)) {
            return false;
        }
    }
    if (option_index < count) {
        line.command = vector[option_index];
        line.operands.assign(vector + option_index + 1, vector + count);
    }
    return true;
}

/// The work of read_command_line(), which looks after \p given.
bool read_given(int count, char **vector, command_line &line, given_options &given)
{
    if (!read_options(count, vector, line, given)) {
        print_indented("Try 'corvella -help'.\n");
        return false;
    }
    if (line.automated) {
        frame_output();
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

void complain_of_usage(const std::string &complaint)
{
    report_message(9, "%s", complaint.c_str());
    print_indented("%s", usage_text(terminal_columns(STDERR_FILENO)).c_str());
}
