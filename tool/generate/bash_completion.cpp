#include "tool/generate/lists.h"
#include "tool/generate/shell.h"

namespace corvella {

namespace {

// Between two words of a command line, bash gives ":" and "=" as words of their own.
constexpr char find_command[] = R"(# bash completion for corvella; made from its table of options
# shellcheck shell=bash disable=SC2207 # no name of a list has a blank in it

_corvella_files()
{
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -f -- "$1"))
}

_corvella()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' options i
    COMPREPLY=()
    [ "$word" != = ] || word=''
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    previous=${previous/#--/-}
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]/#--/-} in
        ARGUMENT_OPTIONS)
            [ "${COMP_WORDS[i + 1]}" != = ] || ((++i))
            ((++i))
            ;;
        :) ((++i)) ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
)";

constexpr char choose_words[] = R"(    if [[ $word == --* ]]; then
        COMPREPLY=($(compgen -P - -W "$options" -- "${word#-}"))
    elif [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
)";

std::string words_of(const std::vector<program_option> &options)
{
    std::string words;
    for (const program_option &option : options) {
        words += (words.empty() ? "-" : " -") + std::string(option.name);
    }
    return words;
}

/// What is completed behind an option: a file's name, or nothing.
std::string complete_arguments()
{
    std::string text = "    case $previous in\n";
    for (const program_option &option : all_options()) {
        if (option.argument != nullptr && is_file(option.argument)) {
            text += "    -" + std::string(option.name) + ")\n        _corvella_files \"$word\"\n" +
                    "        return\n        ;;\n";
        }
    }
    text += "    esac\n";
    return text + with_argument_options("    case $previous in\n"
                                        "    ARGUMENT_OPTIONS) return ;;\n"
                                        "    esac\n");
}

std::string choose_options()
{
    std::string text = "    case $command in\n";
    for (const program_command &command : program_commands()) {
        text += "    " + std::string(command.name) + ") options='" +
                words_of(options_of(command.name)) + "' ;;\n";
    }
    return text + "    *) options='" + words_of(all_options()) + "' ;;\n    esac\n";
}

std::string complete_operands()
{
    std::string names;
    std::string branches;
    for (const program_command &command : program_commands()) {
        names += (names.empty() ? "" : " ") + std::string(command.name);
        if (is_file(command.arguments)) {
            branches += "    elif [ \"$command\" = " + std::string(command.name) +
                        " ]; then\n        _corvella_files \"$word\"\n";
        }
    }
    return "    elif [ -z \"$command\" ]; then\n        COMPREPLY=($(compgen -W '" + names +
           "' -- \"$word\"))\n" + branches + "    fi\n";
}

} // namespace

std::string bash_completion()
{
    return with_argument_options(find_command) + complete_arguments() + choose_options() +
           choose_words + complete_operands() + "}\n\ncomplete -F _corvella corvella\n";
}

} // namespace corvella
