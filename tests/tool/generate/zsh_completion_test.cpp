/// \file
/// The completion of zsh, in zsh, with functions of the test's own for those of the completion
/// system.
#include <gtest/gtest.h>

#include "tests/harness/program.h"
#include "tests/harness/temporary_directory.h"
#include "tool/generate/lists.h"

namespace {

using namespace corvella;

/// What the completion asks of the completion system, which \p state tells where the last of
/// \p words stands: a line for each. An empty state says that all is completed. The variables of
/// whoever completes stay as they are.
std::string asked(const std::string &state, const std::vector<std::string> &words)
{
    constexpr char script[] = R"(
fpath=(.)
autoload -Uz _corvella
_arguments() {
    print -rl -- "$@"
    state=$wanted_state line=$words[-1] curcontext=$curcontext-deeper opt_args[-in]=file
    [[ -z $state ]]
}
_describe() { print -r -- describe $1; print -rl -- ${(P)2} }
_files() { print files }
wanted_state=$1
shift
words=(corvella "$@") CURRENT=$(($# + 1))
command=stop i=0 state=old line=old curcontext=old opt_args=old
_corvella
[[ $command$i$state$line$curcontext$opt_args = stop0oldoldoldold ]] || print changed variables
)";
    const TemporaryDirectory directory;
    directory.write("_corvella", zsh_completion());
    std::vector<std::string> command = {"zsh", "-f", "-c", script, "zsh", state};
    command.insert(command.end(), words.begin(), words.end());
    ProgramOptions options;
    options.directory = directory.path();
    const ProgramResult result = run_program(command, options);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exit_status, 0);
    return result.out;
}

constexpr char in[] = "-in[Reads \\[from\\] a \\\\file: it's read.]:TARGET:_files\n";
constexpr char level[] = "-level[.Level of 'what' is shown.]:a\\:b\\\\c: \n";
constexpr char level_of_keep[] = "-level['Level' without an argument.]\n";
constexpr char out[] = "-out[Writes a file.]:FILE:_files\n";
constexpr char dry[] = "-dry[Does nothing, not even \"this\".]\n";
constexpr char places[] = "1:command:->command\n*:argument:->argument\n";

/// What it asks where nothing but options is completed.
std::string options_asked(const std::vector<std::string> &options)
{
    std::string text = "-C\n";
    for (const std::string &option : options) {
        text += option;
    }
    return text + places;
}

TEST(ZshCompletion, NamesTheProgramInItsFirstLine)
{
    EXPECT_EQ(zsh_completion().rfind("#compdef corvella\n", 0), 0U);
}

TEST(ZshCompletion, HasAllOptionsWhereThereIsNoCommand)
{
    EXPECT_EQ(asked("", {"-"}), options_asked({in, level, out, dry}));
    EXPECT_EQ(asked("", {"unknown", "-"}), options_asked({in, level, out, dry}));
}

TEST(ZshCompletion, HasTheOptionsOfTheFirstOperand)
{
    EXPECT_EQ(asked("", {"show", "-"}), options_asked({in, level, dry}));
    EXPECT_EQ(asked("", {"keep", "-"}), options_asked({level_of_keep, out, dry}));
    EXPECT_EQ(asked("", {"stop", "-"}), options_asked({dry}));
    EXPECT_EQ(asked("", {"stop", "keep", "-"}), options_asked({dry}));
    EXPECT_EQ(asked("", {"keep", "file", "-"}), options_asked({level_of_keep, out, dry}));
}

TEST(ZshCompletion, TakesNoOptionOrArgumentForACommand)
{
    EXPECT_EQ(asked("", {"-in", "show", "stop", "-"}), options_asked({dry}));
    EXPECT_EQ(asked("", {"-level", "show", "stop", "-"}), options_asked({dry}));
    EXPECT_EQ(asked("", {"-dry", "stop", "-"}), options_asked({dry}));
    EXPECT_EQ(asked("", {"-in", "stop", "-"}), options_asked({in, level, out, dry}));
}

TEST(ZshCompletion, HasTheOptionsWithTwoDashesToo)
{
    const std::string other = "--level['Level' without an argument.]\n";
    EXPECT_EQ(asked("", {"stop", "--"}), options_asked({dry, std::string("-") + dry}));
    EXPECT_EQ(asked("", {"--level", "show", "stop", "-"}),
              options_asked({dry, std::string("-") + dry}));
    EXPECT_EQ(asked("", {"keep", "--le"}),
              options_asked({level_of_keep, out, dry, other, std::string("-") + out,
                             std::string("-") + dry}));
}

// The word that is being completed is no command yet.
TEST(ZshCompletion, TakesNoUnfinishedWordForACommand)
{
    EXPECT_EQ(asked("", {"stop"}), options_asked({in, level, out, dry}));
}

TEST(ZshCompletion, DescribesTheCommands)
{
    EXPECT_EQ(asked("command", {"s"}), options_asked({in, level, out, dry}) +
                                           "describe command\n"
                                           "show:Shows\\: it's \\\\all.\n"
                                           "keep:'Keeps' [it].\n"
                                           "stop:.Ends.\n");
}

TEST(ZshCompletion, HasFilesForTheOperandsThatAreFiles)
{
    EXPECT_EQ(asked("argument", {"show", ""}), options_asked({in, level, dry}) + "files\n");
    EXPECT_EQ(asked("argument", {"keep", "file", "f"}),
              options_asked({level_of_keep, out, dry}) + "files\n");
    EXPECT_EQ(asked("argument", {"stop", ""}), options_asked({dry}));
    EXPECT_EQ(asked("argument", {"unknown", ""}), options_asked({in, level, out, dry}));
}

TEST(ZshCompletion, HasALineForEachOptionAndCommand)
{
    const std::string text = zsh_completion();
    EXPECT_NE(text.find("\n(keep)\n"
                        "    options=(\n"
                        "        '-level['\\''Level'\\'' without an argument.]'\n"
                        "        '-out[Writes a file.]:FILE:_files'\n"
                        "        '-dry[Does nothing, not even \"this\".]'\n"
                        "    )\n"
                        "    ;;\n"
                        "(stop)\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\ncommands=(\n"
                        "    'show:Shows\\: it'\\''s \\\\all.'\n"
                        "    'keep:'\\''Keeps'\\'' [it].'\n"
                        "    'stop:.Ends.'\n"
                        ")\n"),
              std::string::npos)
        << text;
}

} // namespace
