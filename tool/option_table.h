/// \file
/// The commands, options and exit statuses of the program: one table each, for the parser, the
/// usage text, the manual page and the completions of the shells.
#pragma once

#include <vector>

#include "support/options.h"
#include "tool/exit_status.h"

namespace corvella {

/// What an option means; the code that the parser returns for it.
enum option_meaning {
    OPTION_PROXY = 256, // beyond every character
    OPTION_PROXY_USER,
    OPTION_PROXY_PASS,
    OPTION_USER,
    OPTION_PASS,
    OPTION_MAX_TIME,
    OPTION_QUIET,
    OPTION_OUTPUT,
    OPTION_HEADER,
    OPTION_VERBOSE,
    OPTION_KEEP_PARTIAL,
    OPTION_KEEP_BODY,
    OPTION_DATA,
    OPTION_TYPE,
    OPTION_AUTOMATED,
    OPTION_HELP,
    OPTION_SHOW_VERSION,
    OPTION_PRODUCT,
    OPTION_PRODUCTLINE,
    OPTION_VERSION,
    OPTION_VERSION_NAME,
    OPTION_OS,
    OPTION_OS_VERSION,
    OPTION_MACHINE_ID,
    OPTION_ARCH,
    OPTION_OPEN,
};

/// What a command's name means.
enum command_meaning {
    NO_COMMAND, ///< of a name that the table does not have
    COMMAND_GET,
    COMMAND_POST,
    COMMAND_UPDATE,
    COMMAND_DESCRIBE,
    COMMAND_OPEN,
};

struct program_command {
    const char *name;
    command_meaning meaning;
    const char *arguments; ///< "" where it takes none
    const char *description;
};

struct program_option {
    const char *name;
    const char *argument; ///< null where it takes none
    option_meaning meaning;
    const char *description;
    const char *usage_line = nullptr; ///< for the usage text, where that is not composed of these
};

/// Options that go with the same commands.
struct option_group {
    const char *heading;
    std::vector<const char *> commands; ///< empty for all of them; {""} for options without any
    const program_option *first;
    const program_option *end;
};

// For loops over the options of a group.
inline const program_option *begin(const option_group &group)
{
    return group.first;
}
inline const program_option *end(const option_group &group)
{
    return group.end;
}

struct exit_status_meaning {
    exit_status status;
    const char *meaning;
};

const std::vector<program_command> &program_commands();
const std::vector<option_group> &option_groups();
const std::vector<exit_status_meaning> &exit_status_meanings();

/// \return what a name means as a command.
command_meaning meaning_of_command(const char *name);

/// \return the options of \p command; "" for those without a command.
std::vector<program_option> options_of(const char *command);

/// \return the parser's table, which has the options of all commands. \param updates whether the
/// command is `update`.
std::vector<long_option> parser_table(bool updates);

/// \return the name of an option that does not go with \p command; null when it does.
const char *misplaced_option(option_meaning meaning, const char *command);

} // namespace corvella
