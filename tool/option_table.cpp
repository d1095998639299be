#include "tool/option_table.h"

#include <cstring>
#include <iterator>

namespace corvella {

namespace {

// The usage lines of the first three are given, tabs and all, and stay whole on every terminal.
constexpr program_option web_options[] = {
    {"proxy", "host:port", OPTION_PROXY, "The proxy, instead of the one in the system's settings.",
     "  -proxy host:port\tUse a proxy server to connect to the internet."},
    {"proxy-user", "user", OPTION_PROXY_USER, "Username for the proxy that -proxy names.",
     "  -proxy-user\t\tUsername for proxy authentication."},
    {"proxy-pass", "password", OPTION_PROXY_PASS, "Password for the proxy that -proxy names.",
     "  -proxy-pass\t\tPassword for proxy authentication."},
    {"user", "NAME", OPTION_USER, "Username for the web server."},
    {"pass", "PASSWORD", OPTION_PASS, "Its password; - reads standard input."},
    {"max-time", "SECONDS", OPTION_MAX_TIME, "Limit the time of the whole exchange."},
    {"quiet", nullptr, OPTION_QUIET, "Show errors only, not how long the wait is."},
};

constexpr program_option request_options[] = {
    {"output", "FILE", OPTION_OUTPUT, "Write the reply's body to a file."},
    {"header", nullptr, OPTION_HEADER, "Print the reply's header too."},
    {"verbose", nullptr, OPTION_VERBOSE, "Show the request, the reply's header and the time."},
    {"keep-partial", nullptr, OPTION_KEEP_PARTIAL, "Keep the part of an incomplete body."},
    {"keep-body", nullptr, OPTION_KEEP_BODY, "Keep the body of an error reply."},
};

constexpr program_option post_options[] = {
    {"data", "FILE", OPTION_DATA, "Post a file unchanged; - reads standard input."},
    {"type", "TYPE", OPTION_TYPE, "The media type of -data."},
};

constexpr program_option update_options[] = {
    {"product", "NAME", OPTION_PRODUCT, "The product (required)."},
    {"productline", "NAME", OPTION_PRODUCTLINE, "Its product line (required)."},
    {"version", "NUMBER", OPTION_VERSION, "Its version, such as 5.1 (required)."},
    {"version-name", "NAME", OPTION_VERSION_NAME, "The version's name, if it is not its number."},
    {"os", "NAME", OPTION_OS, "The operating system, if not this one."},
    {"os-version", "TEXT", OPTION_OS_VERSION, "Its version, if not this one's."},
    {"machine-id", "TEXT", OPTION_MACHINE_ID, "The computer, if not this one's name."},
    {"arch", "NAME", OPTION_ARCH, "The processor, if not this one's."},
    {"open", nullptr, OPTION_OPEN, "Open the URL of the reply."},
};

constexpr program_option general_options[] = {
    {"automated", nullptr, OPTION_AUTOMATED, "Frame the output for an automated run."},
    {"help", nullptr, OPTION_HELP, "Show how the program is used; also -h."},
};

constexpr program_option lone_options[] = {
    {"version", nullptr, OPTION_SHOW_VERSION, "Show the program's version."},
};

template <std::size_t size>
option_group group_of(const char *heading, const std::vector<const char *> &commands,
                      const program_option (&options)[size])
{
    return {heading, commands, std::begin(options), std::end(options)};
}

bool goes_with(const option_group &group, const char *command)
{
    for (const char *const name : group.commands) {
        if (std::strcmp(name, command) == 0) {
            return true;
        }
    }
    return group.commands.empty();
}

/// Whether an option gives way to that of `update` of the same name, or the other way round.
bool gives_way(const program_option &option, bool updates)
{
    return option.meaning == (updates ? OPTION_SHOW_VERSION : OPTION_VERSION);
}

} // namespace

const std::vector<program_command> &program_commands()
{
    static const std::vector<program_command> commands = {
        {"get", COMMAND_GET, "URL", "Get a page and print its body."},
        {"post", COMMAND_POST, "URL [NAME=VALUE]...", "Post a form and print the reply's body."},
        {"update", COMMAND_UPDATE, "", "Ask whether there is a newer version of a product."},
        {"describe", COMMAND_DESCRIBE, "", "Describe this machine and the time."},
        {"open", COMMAND_OPEN, "TARGET", "Open a file (an absolute path) or a URL."},
    };
    return commands;
}

const std::vector<option_group> &option_groups()
{
    static const std::vector<option_group> groups = {
        group_of("Options of get, post and update", {"get", "post", "update"}, web_options),
        group_of("Options of get and post", {"get", "post"}, request_options),
        group_of("Options of post", {"post"}, post_options),
        group_of("Options of update", {"update"}, update_options),
        group_of("General options", {}, general_options),
        group_of("Options without a command", {""}, lone_options),
    };
    return groups;
}

const std::vector<exit_status_meaning> &exit_status_meanings()
{
    static const std::vector<exit_status_meaning> meanings = {
        {EXIT_DONE, "done"},
        {EXIT_FAILED, "failed; the reason is on standard error"},
        {EXIT_USAGE, "the command line is wrong"},
        {EXIT_TIMED_OUT, "no progress for 10 seconds, or the end of -max-time"},
        {EXIT_CANCELLED, "cancelled with Ctrl-C"},
    };
    return meanings;
}

command_meaning meaning_of_command(const char *name)
{
    for (const program_command &command : program_commands()) {
        if (std::strcmp(command.name, name) == 0) {
            return command.meaning;
        }
    }
    return NO_COMMAND;
}

std::vector<program_option> options_of(const char *command)
{
    std::vector<program_option> options;
    for (const option_group &group : option_groups()) {
        for (const program_option &option : group) {
            if (goes_with(group, command)) {
                options.push_back(option);
            }
        }
    }
    return options;
}

std::vector<long_option> parser_table(bool updates)
{
    // An exact name, so that -header does not make it ambiguous.
    std::vector<long_option> table = {{"h", 0, nullptr, OPTION_HELP}};
    for (const option_group &group : option_groups()) {
        for (const program_option &option : group) {
            if (!gives_way(option, updates)) {
                table.push_back({option.name, option.argument != nullptr, nullptr, option.meaning});
            }
        }
    }
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

const char *misplaced_option(option_meaning meaning, const char *command)
{
    for (const option_group &group : option_groups()) {
        for (const program_option &option : group) {
            if (option.meaning == meaning && !goes_with(group, command)) {
                return option.name;
            }
        }
    }
    return nullptr;
}

} // namespace corvella
