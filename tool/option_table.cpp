#include "tool/option_table.h"

#include <cstring>
#include <iterator>

namespace {

struct program_option {
    const char *name;
    bool takes_argument;
    option_meaning meaning;
    const char *usage;
};

constexpr program_option web_options[] = {
    {"proxy", true, OPTION_PROXY,
     "  -proxy host:port\tUse a proxy server to connect to the internet."},
    {"proxy-user", true, OPTION_PROXY_USER, "  -proxy-user\t\tUsername for proxy authentication."},
    {"proxy-pass", true, OPTION_PROXY_PASS, "  -proxy-pass\t\tPassword for proxy authentication."},
};

constexpr program_option request_options[] = {
    {"output", true, OPTION_OUTPUT, "  -output FILE\t\tWrite the reply's body to a file."},
    {"header", false, OPTION_HEADER, "  -header\t\tPrint the reply's header too."},
};

constexpr program_option update_options[] = {
    {"product", true, OPTION_PRODUCT, "  -product NAME\t\tThe product (required)."},
    {"productline", true, OPTION_PRODUCTLINE, "  -productline NAME\tIts product line (required)."},
    {"version", true, OPTION_VERSION, "  -version NUMBER\tIts version, such as 5.1 (required)."},
    {"version-name", true, OPTION_VERSION_NAME,
     "  -version-name NAME\tThe version's name, if it is not its number."},
    {"os", true, OPTION_OS, "  -os NAME\t\tThe operating system, if not this one."},
    {"os-version", true, OPTION_OS_VERSION, "  -os-version TEXT\tIts version, if not this one's."},
    {"machine-id", true, OPTION_MACHINE_ID,
     "  -machine-id TEXT\tThe computer, if not this one's name."},
    {"arch", true, OPTION_ARCH, "  -arch NAME\t\tThe processor, if not this one's."},
    {"open", false, OPTION_OPEN, "  -open\t\t\tOpen the URL of the reply."},
};

constexpr program_option general_options[] = {
    {"automated", false, OPTION_AUTOMATED,
     "  -automated\t\tFrame the output for an automated run."},
    {"help", false, OPTION_HELP, "  -help\t\t\tShow this text."},
    {"version", false, OPTION_SHOW_VERSION, "  -version\t\tShow the program's version."},
};

/// Options that go with the same commands.
struct option_group {
    const char *heading;
    std::vector<const char *> commands; ///< none: all of them
    const program_option *begin;
    const program_option *end;
};

const std::vector<option_group> &option_groups()
{
    static const std::vector<option_group> groups = {
        {"Options of get, post and update:",
         {"get", "post", "update"},
         std::begin(web_options),
         std::end(web_options)},
        {"Options of get and post:",
         {"get", "post"},
         std::begin(request_options),
         std::end(request_options)},
        {"Options of update:", {"update"}, std::begin(update_options), std::end(update_options)},
        {"General options:", {}, std::begin(general_options), std::end(general_options)},
    };
    return groups;
}

constexpr char commands_usage[] =
    "Usage: corvella COMMAND [OPTION]... [ARGUMENT]...\n"
    "\n"
    "Commands:\n"
    "  get URL\t\tGet a page and print its body.\n"
    "  post URL NAME=VALUE...\tPost a form and print the reply's body.\n"
    "  update\t\tAsk whether there is a newer version of a product.\n"
    "  describe\t\tDescribe this machine and the time.\n"
    "  open TARGET\t\tOpen a file (an absolute path) or a URL.\n";

constexpr char statuses_usage[] =
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage, 3 time-out, 130 cancelled.\n";

bool goes_with(const option_group &group, const char *command)
{
    for (const char *const name : group.commands) {
        if (std::strcmp(name, command) == 0) {
            return true;
        }
    }
    return group.commands.empty();
}

} // namespace

std::vector<long_option> parser_table(bool updates)
{
    const option_meaning version = updates ? OPTION_VERSION : OPTION_SHOW_VERSION;
    std::vector<long_option> table;
    for (const option_group &group : option_groups()) {
        for (const program_option *option = group.begin; option != group.end; ++option) {
            if (std::strcmp(option->name, "version") != 0 || option->meaning == version) {
                table.push_back({option->name, option->takes_argument, nullptr, option->meaning});
            }
        }
    }
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

const char *misplaced_option(option_meaning meaning, const char *command)
{
    for (const option_group &group : option_groups()) {
        for (const program_option *option = group.begin; option != group.end; ++option) {
            if (option->meaning == meaning && !goes_with(group, command)) {
                return option->name;
            }
        }
    }
    return nullptr;
}

std::string usage_text()
{
    std::string text = commands_usage;
    for (const option_group &group : option_groups()) {
        text += std::string("\n") + group.heading + "\n";
        for (const program_option *option = group.begin; option != group.end; ++option) {
            text += std::string(option->usage) + "\n";
        }
    }
    text += statuses_usage;
    return text;
}
