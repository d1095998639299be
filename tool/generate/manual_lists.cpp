#include "tool/generate/lists.h"
#include "tool/option_table.h"

namespace corvella {

namespace {

constexpr char list_begin[] = ".Bl -tag -width Ds\n";
constexpr char list_end[] = ".El\n";

/// A line of text, so that nothing in it is taken for a request.
std::string text_line(const std::string &text)
{
    std::string line = text[0] == '.' || text[0] == '\'' ? "\\&" : "";
    for (const char c : text) {
        if (c == '\\') {
            line += "\\e";
        } else {
            line += c;
        }
    }
    return line + "\n";
}

std::string item(const std::string &listed, const std::string &arguments, const char *description)
{
    std::string text = ".It " + listed;
    if (!arguments.empty()) {
        text += " Ar " + arguments;
    }
    return text + "\n" + text_line(description);
}

} // namespace

std::string manual_lists()
{
    std::string text = std::string(".Ss Commands\n") + list_begin;
    for (const program_command &command : program_commands()) {
        text += item(std::string("Cm ") + command.name, command.arguments, command.description);
    }
    text += list_end;
    for (const option_group &group : option_groups()) {
        text += std::string(".Ss ") + group.heading + "\n" + list_begin;
        for (const program_option &option : group) {
            const char *const argument = option.argument != nullptr ? option.argument : "";
            text += item(std::string("Fl ") + option.name, argument, option.description);
        }
        text += list_end;
    }
    return text;
}

} // namespace corvella
