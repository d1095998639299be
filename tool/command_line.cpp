#include "tool/command_line.h"

#include <cstring>

#include "support/c-utils.h"
#include "support/error.h"
#include "support/options.h"
#include "tool/option_table.h"

namespace {

constexpr std::int32_t greatest_port = 65535;

/// The arguments of the proxy's options; null where one was not given.
struct proxy_options {
    const char *proxy;
    const char *user;
    char *password;
};

void take_operand(command_line &line, const char *operand)
{
    if (line.command == nullptr) {
        line.command = operand;
    } else {
        line.operands.push_back(operand);
    }
}

/// Where the argument of an option goes that is no more than remembered; null for the others.
const char **place_of_argument(command_line &line, proxy_options &proxy, int code)
{
    switch (code) {
    case OPTION_PROXY:
        return &proxy.proxy;
    case OPTION_PROXY_USER:
        return &proxy.user;
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
        return &line.header;
    case OPTION_AUTOMATED:
        return &line.automated;
    case OPTION_HELP:
        return &line.help;
    case OPTION_SHOW_VERSION:
        return &line.version;
    case OPTION_OPEN:
        return &line.open;
    default:
        return nullptr;
    }
}

/// \return false for an option that the parser has already complained of.
bool take_option(command_line &line, proxy_options &proxy, int code)
{
    if (const char **const argument = place_of_argument(line, proxy, code)) {
        *argument = option_argument;
    } else if (bool *const place = place_of_switch(line, code)) {
        *place = true;
    } else if (code == OPTION_PROXY_PASS) {
        proxy.password = option_argument;
    } else {
        return false;
    }
    return true;
}

/// Operands are taken in order, so that the command is known to the options behind it.
bool read_options(int count, char **vector, command_line &line, proxy_options &proxy)
{
    constexpr int operand_code = 1;
    option_index = 0;
    for (;;) {
        const std::vector<long_option> table = options_of_command(line.command);
        const int code = get_long_options_only(count, vector, "-", table.data(), nullptr);
        if (code == -1) {
            break;
        }
        if (code == operand_code) {
            take_operand(line, option_argument);
        } else if (!take_option(line, proxy, code)) {
            return false;
        }
    }
    while (option_index < count) { // what stands behind "--"
        take_operand(line, vector[option_index++]);
    }
    return true;
}

/// Fills the settings and blanks the password where the system shows it.
bool take_proxy(command_line &line, const proxy_options &proxy)
{
    const int result = fill_proxy_settings(&line.proxy, proxy.proxy, proxy.user, proxy.password);
    if (proxy.password != nullptr) {
        std::memset(proxy.password, '*', std::strlen(proxy.password));
    }
    const std::int32_t port = line.proxy.proxy_port;
    return result == 0 && (proxy.proxy == nullptr || (port >= 1 && port <= greatest_port));
}

} // namespace

bool read_command_line(int count, char **vector, command_line &line)
{
    line = {};
    proxy_options proxy = {};
    if (!read_options(count, vector, line, proxy)) {
        print_indented("Try 'corvella -help'.\n");
        return false;
    }
    if (!take_proxy(line, proxy)) {
        complain_of_usage("-proxy takes host:port, with a port from 1 to 65535.");
        return false;
    }
    return true;
}

void complain_of_usage(const char *complaint)
{
    report_message(9, "%s\n", complaint);
    print_indented("%s", usage_text().c_str());
}
