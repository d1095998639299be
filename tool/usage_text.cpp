#include "tool/usage_text.h"

#include <vector>

#include "support/c-utils.h"
#include "tool/option_table.h"

namespace corvella {

namespace {

constexpr int least_columns = 40;
constexpr int tab = 8;
constexpr int description_column = 24;
constexpr char credentials_note[] =
    "The proxy and the web server both see the credentials of -proxy-user or -user, but a proxy "
    "that asks for its own (status 407) gets none.";

/// Breaks a text into lines. \param first_column where it begins on the first of them
/// \param indent where it begins on the others
std::string wrapped(const std::string &text, int columns, int indent, int first_column)
{
    const std::size_t most_indents = text.size() * static_cast<std::size_t>(indent);
    std::vector<char> room(text.size() + most_indents + 1);
    copy_string_bounded(room.data(), text.c_str(), room.size());
    wrap_text_in_place(room.data(), columns, indent, first_column);
    return room.data();
}

/// A line of a list: what is listed, and at its own column what it means.
std::string entry(const std::string &listed, const char *description, int columns)
{
    std::string line = "  " + listed;
    int column = static_cast<int>(line.size());
    do {
        line += '\t';
        column = (column / tab + 1) * tab;
    } while (column < description_column);
    return line + wrapped(description, columns, description_column, column) + "\n";
}

/// \p name with the arguments behind it, if it takes any.
std::string with_arguments(const std::string &name, const std::string &arguments)
{
    if (arguments.empty()) {
        return name;
    }
    return name + " " + arguments;
}

std::string option_entry(const program_option &option, int columns)
{
    if (option.usage_line != nullptr) {
        return std::string(option.usage_line) + "\n";
    }
    const char *const argument = option.argument != nullptr ? option.argument : "";
    return entry(with_arguments(std::string("-") + option.name, argument), option.description,
                 columns);
}

} // namespace

std::string usage_text(int columns)
{
    columns = max_int(columns, least_columns);
    std::string text =
        wrapped("Usage: corvella COMMAND [OPTION]... [ARGUMENT]...", columns, tab, 0);
    text += "\n\nCommands:\n";
    for (const program_command &command : program_commands()) {
        text +=
            entry(with_arguments(command.name, command.arguments), command.description, columns);
    }
    for (const option_group &group : option_groups()) {
        text += std::string("\n") + group.heading + ":\n";
        for (const program_option &option : group) {
            text += option_entry(option, columns);
        }
    }
    text += "\n" + wrapped(credentials_note, columns, 0, 0) + "\n";
    text += "\nExit status:\n";
    for (const exit_status_meaning &line : exit_status_meanings()) {
        text += entry(std::to_string(line.status), line.meaning, columns);
    }
    return text;
}

} // namespace corvella
