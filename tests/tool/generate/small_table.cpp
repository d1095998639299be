// The table that the tests make lists of. Whatever means something to mdoc or to a shell is in it,
// and an option of two commands that takes an argument with one of them only.
#include <cstring>
#include <iterator>

#include "tool/option_table.h"

namespace corvella {

namespace {

constexpr program_option show_options[] = {
    {"in", "TARGET", OPTION_OPEN, "Reads [from] a \\file: it's read."},
    {"level", "a:b\\c", OPTION_OS, ".Level of 'what' is shown."},
};

constexpr program_option other_options[] = {
    {"level", nullptr, OPTION_QUIET, "'Level' without an argument."},
    {"out", "FILE", OPTION_OUTPUT, "Writes a file."},
};

constexpr program_option general_options[] = {
    {"dry", nullptr, OPTION_HEADER, "Does nothing, not even \"this\"."},
};

} // namespace

const std::vector<program_command> &program_commands()
{
    static const std::vector<program_command> commands = {
        {"show", COMMAND_OPEN, "TARGET", "Shows: it's \\all."},
        {"keep", COMMAND_GET, "FILE", "'Keeps' [it]."},
        {"stop", COMMAND_POST, "", ".Ends."},
    };
    return commands;
}

const std::vector<option_group> &option_groups()
{
    static const std::vector<option_group> groups = {
        {"Options of show", {"show"}, std::begin(show_options), std::end(show_options)},
        {"Options of keep", {"keep"}, std::begin(other_options), std::end(other_options)},
        {"General options", {}, std::begin(general_options), std::end(general_options)},
    };
    return groups;
}

std::vector<program_option> options_of(const char *command)
{
    if (std::strcmp(command, "show") == 0) {
        return {show_options[0], show_options[1], general_options[0]};
    }
    if (std::strcmp(command, "keep") == 0) {
        return {other_options[0], other_options[1], general_options[0]};
    }
    return {general_options[0]};
}

} // namespace corvella
