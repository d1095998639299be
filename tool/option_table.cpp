#include "tool/option_table.h"

#include <cstring>
#include <initializer_list>

namespace {

enum argument_need { NO_ARGUMENT = 0, NEEDS_ARGUMENT = 1 };

struct program_option {
    const char *name;
    argument_need argument;
    option_meaning meaning;
    const char *usage;
};

constexpr program_option web_options[] = {
    {"proxy", NEEDS_ARGUMENT, OPTION_PROXY,
     "  -proxy host:port\tUse a proxy server to connect to the internet."},
    {"proxy-user", NEEDS_ARGUMENT, OPTION_PROXY_USER,
     "  -proxy-user\t\tUsername for proxy authentication."},
    {"proxy-pass", NEEDS_ARGUMENT, OPTION_PROXY_PASS,
     "  -proxy-pass\t\tPassword for proxy authentication."},
};

constexpr program_option request_options[] = {
    {"output", NEEDS_ARGUMENT, OPTION_OUTPUT,
     "  -output FILE\t\tWrite the reply's body to a file."},
    {"header", NO_ARGUMENT, OPTION_HEADER, "  -header\t\tPrint the reply's header too."},
};

constexpr program_option update_only_options[] = {
    {"product", NEEDS_ARGUMENT, OPTION_PRODUCT, "  -product NAME\t\tThe product (required)."},
    {"productline", NEEDS_ARGUMENT, OPTION_PRODUCTLINE,
     "  -productline NAME\tIts product line (required)."},
    {"version", NEEDS_ARGUMENT, OPTION_VERSION,
     "  -version NUMBER\tIts version, such as 5.1 (required)."},
    {"version-name", NEEDS_ARGUMENT, OPTION_VERSION_NAME,
     "  -version-name NAME\tThe version's name, if it is not its number."},
    {"os", NEEDS_ARGUMENT, OPTION_OS, "  -os NAME\t\tThe operating system, if not this one."},
    {"os-version", NEEDS_ARGUMENT, OPTION_OS_VERSION,
     "  -os-version TEXT\tIts version, if not this one's."},
    {"machine-id", NEEDS_ARGUMENT, OPTION_MACHINE_ID,
     "  -machine-id TEXT\tThe computer, if not this one's name."},
    {"arch", NEEDS_ARGUMENT, OPTION_ARCH, "  -arch NAME\t\tThe processor, if not this one's."},
    {"open", NO_ARGUMENT, OPTION_OPEN, "  -open\t\t\tOpen the URL of the reply."},
};

constexpr program_option general_options[] = {
    {"automated", NO_ARGUMENT, OPTION_AUTOMATED,
     "  -automated\t\tFrame the output for an automated run."},
    {"help", NO_ARGUMENT, OPTION_HELP, "  -help\t\t\tShow this text."},
    {"version", NO_ARGUMENT, OPTION_SHOW_VERSION, "  -version\t\tShow the program's version."},
};

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

/// \return the option of this meaning, or null.
template <std::size_t N>
const program_option *find_option(const program_option (&options)[N], option_meaning meaning)
{
    for (const program_option &option : options) {
        if (option.meaning == meaning) {
            return &option;
        }
    }
    return nullptr;
}

bool is_one_of(const char *command, std::initializer_list<const char *> names)
{
    for (const char *name : names) {
        if (std::strcmp(command, name) == 0) {
            return true;
        }
    }
    return false;
}

template <std::size_t N>
void append_parser_options(std::vector<long_option> &table, const program_option (&options)[N],
                           bool with_version)
{
    for (const program_option &option : options) {
        if (with_version || std::strcmp(option.name, "version") != 0) {
            table.push_back({option.name, option.argument, nullptr, option.meaning});
        }
    }
}

template <std::size_t N>
void append_usage(std::string &text, const char *heading, const program_option (&options)[N])
{
    text += '\n';
    text += heading;
    text += '\n';
    for (const program_option &option : options) {
        text += option.usage;
        text += '\n';
    }
}

} // namespace

std::vector<long_option> parser_table(bool updates)
{
    std::vector<long_option> table;
    append_parser_options(table, web_options, true);
    append_parser_options(table, request_options, true);
    append_parser_options(table, update_only_options, updates);
    append_parser_options(table, general_options, !updates);
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

const char *misplaced_option(option_meaning meaning, const char *command)
{
    const program_option *option = nullptr;
    if (is_one_of(command, {"describe", "open"})) {
        option = find_option(web_options, meaning);
    }
    if (option == nullptr && is_one_of(command, {"update", "describe", "open"})) {
        option = find_option(request_options, meaning);
    }
    if (option == nullptr && is_one_of(command, {"get", "post", "describe", "open"})) {
        option = find_option(update_only_options, meaning);
    }
    return option != nullptr ? option->name : nullptr;
}

std::string usage_text()
{
    std::string text = commands_usage;
    append_usage(text, "Options of get, post and update:", web_options);
    append_usage(text, "Options of get and post:", request_options);
    append_usage(text, "Options of update:", update_only_options);
    append_usage(text, "General options:", general_options);
    text += statuses_usage;
    return text;
}
