#include "tool/generate/lists.h"
#include "tool/generate/shell.h"

namespace corvella {

namespace {

constexpr char find_command[] = R"(#compdef corvella
# zsh completion for corvella; made from its table of options

local command curcontext=$curcontext state line
local -a commands options
local -A opt_args
integer i
for ((i = 2; i < CURRENT; ++i)); do
    case ${words[i]/#--/-} in
    (ARGUMENT_OPTIONS) ((++i)) ;;
    (-*) ;;
    (*) command=$words[i]; break ;;
    esac
done
)";

/// With a backslash before each of \p special.
std::string escaped(const std::string &text, const std::string &special)
{
    std::string result;
    for (const char c : text) {
        if (special.find(c) != std::string::npos) {
            result += '\\';
        }
        result += c;
    }
    return result;
}

std::string quoted(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\'"; // c itself opens the quotes again
        }
        result += c;
    }
    return "'" + result + "'";
}

/// An option as _arguments takes it: "-name[description]:argument:action".
std::string option_words(const program_option &option)
{
    std::string text =
        "-" + std::string(option.name) + "[" + escaped(option.description, "[]\\") + "]";
    if (option.argument != nullptr) {
        text += ":" + escaped(option.argument, ":\\") + ":" +
                (is_file(option.argument) ? "_files" : " ");
    }
    return quoted(text);
}

/// A branch of the case that chooses the options of a command.
std::string branch(const std::string &pattern, const std::vector<program_option> &options)
{
    std::string text = "(" + pattern + ")\n    options=(\n";
    for (const program_option &option : options) {
        text += "        " + option_words(option) + "\n";
    }
    return text + "    )\n    ;;\n";
}

std::string choose_options()
{
    std::string text = "case $command in\n";
    for (const program_command &command : program_commands()) {
        text += branch(command.name, options_of(command.name));
    }
    return text + branch("*", all_options()) + "esac\n" +
           "(( ! ${words[(I)--*]} )) || options+=(\"${(@)options/#-/--}\")\n";
}

std::string list_commands()
{
    std::string text = "commands=(\n";
    for (const program_command &command : program_commands()) {
        text += "    " +
                quoted(std::string(command.name) + ":" + escaped(command.description, ":\\")) +
                "\n";
    }
    return text + ")\n";
}

std::string complete_operands()
{
    std::string files;
    for (const program_command &command : program_commands()) {
        if (is_file(command.arguments)) {
            files += (files.empty() ? "" : "|") + std::string(command.name);
        }
    }
    return "_arguments -C $options '1:command:->command' '*:argument:->argument' && return\n"
           "case $state in\n"
           "(command) _describe command commands ;;\n"
           "(argument) [[ $command = (" +
           files + ") ]] && _files ;;\nesac\n";
}

} // namespace

std::string zsh_completion()
{
    return with_argument_options(find_command) + choose_options() + list_commands() +
           complete_operands();
}

} // namespace corvella
