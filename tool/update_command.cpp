#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <strings.h>
#include <sys/utsname.h>

#include "support/c-utils.h"
#include "tool/commands.h"
#include "tool/decimal.h"
#include "tool/desktop.h"
#include "tool/exchange.h"
#include "tool/output.h"
#include "tool/password.h"

namespace corvella {

namespace {

constexpr int reply_size = 65536;

/// The reply's fields; empty where the reply has none.
struct update_reply_texts {
    char message[reply_size];
    char version[reply_size];
    char url[reply_size];
    char button[reply_size];
};

/// What describes this machine where the command line does not.
struct machine_texts {
    char os[16];
    char os_version[32];
    char host_name[256];
    utsname system;
};

void describe_machine(machine_texts &machine)
{
    get_os_name(machine.os);
    get_os_version(machine.os_version, sizeof machine.os_version);
    get_host_name(machine.host_name, sizeof machine.host_name);
    uname(&machine.system);
}

const char *given_or(const char *given, const char *otherwise)
{
    return given != nullptr ? given : otherwise;
}

/// Whether the query sends the value that was typed: it has single precision and three decimals.
bool is_sent_unchanged(const std::string &typed, double number)
{
    if (!(number <= static_cast<double>(std::numeric_limits<float>::max()))) {
        return false;
    }
    char sent[64];
    format_string_bounded(sent, sizeof sent, "%.3f",
                          static_cast<double>(static_cast<float>(number)));
    const std::size_t point = std::min(typed.find('.'), typed.size());
    const std::size_t first = std::min(typed.find_first_not_of('0'), point);
    const std::string whole = typed.substr(first, point - first);
    std::string decimals = point < typed.size() ? typed.substr(point + 1) : "";
    decimals.erase(decimals.find_last_not_of('0') + 1);
    decimals.resize(std::max<std::size_t>(decimals.size(), 3), '0');
    return (whole.empty() ? "0" : whole) + "." + decimals == sent;
}

/// \return false, after a complaint, when something required is missing or wrong.
bool check_options(const update_options &options, float &version)
{
    if (options.product == nullptr || options.productline == nullptr ||
        options.version == nullptr) {
        report_usage_error("update needs -product, -productline and -version.");
        return false;
    }
    double number;
    if (!parse_decimal(options.version, number)) {
        report_usage_error("-version takes a number such as 5.1.");
        return false;
    }
    if (!is_sent_unchanged(options.version, number)) {
        report_usage_error(std::string("-version ") + options.version +
                           " has more digits than can be sent.");
        return false;
    }
    version = static_cast<float>(number);
    return true;
}

int query(const command_line &line, float version, update_reply_texts &reply)
{
    const update_options &options = line.update;
    const proxy_arguments proxy = proxy_arguments_of(line.proxy);
    machine_texts machine = {};
    describe_machine(machine);
    return query_product_update(
        options.product, options.productline, version,
        given_or(options.version_name, options.version), given_or(options.os, machine.os),
        given_or(options.os_version, machine.os_version),
        given_or(options.machine_id, machine.host_name),
        given_or(options.arch, machine.system.machine), reply_size, reply.message, reply.version,
        reply.url, reply.button, proxy.host, proxy.port, proxy.user, proxy.password);
}

/// Says a field of the reply, without the line ends behind it.
void print_field(const char *name, const char *value)
{
    std::string text = value;
    text.erase(text.find_last_not_of("\r\n") + 1);
    if (!text.empty()) {
        print_named_result("update", name, text);
    }
}

/// A reply is not trusted to name anything but a page.
bool is_web_address(const char *url)
{
    return strncasecmp(url, "http://", 7) == 0 || strncasecmp(url, "https://", 8) == 0;
}

exit_status open_reply_url(const char *url)
{
    if (url[0] == '\0') {
        report_error("The reply has no URL to open.");
        return EXIT_FAILED;
    }
    if (!is_web_address(url)) {
        report_error(std::string("The reply's URL is no web address: '") + url + "'");
        return EXIT_FAILED;
    }
    return open_on_desktop(url);
}

/// Takes the carriage return off a URL of a reply with such line ends.
void trim_url(char *url)
{
    url[std::strcspn(url, "\r\n")] = '\0';
}

} // namespace

exit_status update_command(command_line &line)
{
    float version = 0.0f;
    if (!line.operands.empty()) {
        report_usage_error("update takes options only.");
        return EXIT_USAGE;
    }
    if (!check_options(line.update, version)) {
        return EXIT_USAGE;
    }
    if (!obtain_password(line)) {
        return EXIT_FAILED;
    }
    static update_reply_texts reply; // too large for the stack of a small thread
    const char *const proxy = proxy_arguments_of(line.proxy).host;
    const progress_facts facts = {proxy != nullptr ? proxy : "www." CORVELLA_MAKER_DOMAIN, 0,
                                  nullptr};
    const int result = run_exchange(line, facts, [&] { return query(line, version, reply); });
    const exit_status status = report_exchange(result);
    if (status != EXIT_DONE) {
        return status;
    }
    trim_url(reply.url);
    print_field("Message", reply.message);
    print_field("Version", reply.version);
    print_field("Button", reply.button);
    print_field("URL", reply.url);
    return line.update.open_url ? open_reply_url(reply.url) : EXIT_DONE;
}

} // namespace corvella
