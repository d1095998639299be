/// \file
/// The completion of bash, in bash.
#include <gtest/gtest.h>

#include "tests/harness/program.h"
#include "tests/harness/temporary_directory.h"
#include "tool/generate/lists.h"

namespace {

using namespace corvella;

/// A folder with the completion and some files to complete.
class BashCompletion : public testing::Test {
protected:
    BashCompletion()
    {
        directory_.write("completion", bash_completion());
        for (const char *const name : {"first file", "file", "show"}) {
            directory_.write(name, "");
        }
    }

    /// What bash prints, with the completion read and \p words for arguments.
    std::string said(const std::string &script, const std::vector<std::string> &words = {}) const
    {
        std::vector<std::string> command = {"bash", "-c", ". ./completion\n" + script, "bash"};
        command.insert(command.end(), words.begin(), words.end());
        ProgramOptions options;
        options.directory = directory_.path();
        const ProgramResult result = run_program(command, options);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.exit_status, 0);
        return result.out;
    }

    /// The words for the last one of a command line, sorted, each with a bar behind it. Bash makes
    /// ":" and "=" words of their own. The variables of whoever completes stay as they are.
    std::string completed(const std::vector<std::string> &words) const
    {
        return said("command=stop options=-old i=0 COMPREPLY=(old)\n"
                    "COMP_WORDS=(corvella \"$@\") COMP_CWORD=$#\n"
                    "_corvella\n"
                    "[ $command$options$i = stop-old0 ] || echo 'it changes the variables'\n"
                    "for word in \"${COMPREPLY[@]}\"; do echo \"$word\"; done |\n"
                    "    LC_ALL=C sort | tr '\\n' '|'\n",
                    words);
    }

private:
    TemporaryDirectory directory_;
};

TEST_F(BashCompletion, IsThatOfTheProgram)
{
    EXPECT_EQ(said("complete -p corvella"), "complete -F _corvella corvella\n");
}

TEST_F(BashCompletion, BeginsWithAllCommands)
{
    EXPECT_EQ(completed({""}), "keep|show|stop|");
    EXPECT_EQ(completed({"s"}), "show|stop|");
    EXPECT_EQ(completed({"f"}), "");
}

TEST_F(BashCompletion, HasAllOptionsWhereThereIsNoCommand)
{
    EXPECT_EQ(completed({"-"}), "-dry|-in|-level|-out|");
    EXPECT_EQ(completed({"-l"}), "-level|");
    EXPECT_EQ(completed({"unknown", "-"}), "-dry|-in|-level|-out|");
}

TEST_F(BashCompletion, HasTheOptionsOfTheFirstOperand)
{
    EXPECT_EQ(completed({"show", "-"}), "-dry|-in|-level|");
    EXPECT_EQ(completed({"keep", "-"}), "-dry|-level|-out|");
    EXPECT_EQ(completed({"stop", "-"}), "-dry|");
    EXPECT_EQ(completed({"stop", "-i"}), "");
    EXPECT_EQ(completed({"stop", "keep", "-"}), "-dry|");
    EXPECT_EQ(completed({"-dry", "keep", "file", "-"}), "-dry|-level|-out|");
}

TEST_F(BashCompletion, HasTheOptionsWithTwoDashesToo)
{
    EXPECT_EQ(completed({"show", "--"}), "--dry|--in|--level|");
    EXPECT_EQ(completed({"show", "--l"}), "--level|");
    EXPECT_EQ(completed({"--in", "firs"}), "first file|");
    EXPECT_EQ(completed({"stop", "--in", "=", "firs"}), "first file|");
    EXPECT_EQ(completed({"--in", "show", "s"}), "show|stop|");
    EXPECT_EQ(completed({"--level", "=", "keep", "stop", "-"}), "-dry|");
    EXPECT_EQ(completed({"--level", "s"}), "");
}

TEST_F(BashCompletion, HasFilesForTheOperandsThatAreFiles)
{
    EXPECT_EQ(completed({"show", "fi"}), "file|first file|");
    EXPECT_EQ(completed({"-dry", "keep", "file", "firs"}), "first file|");
    EXPECT_EQ(completed({"stop", "fi"}), "");
}

TEST_F(BashCompletion, HasFilesForTheArgumentsThatAreFiles)
{
    EXPECT_EQ(completed({"-in", "firs"}), "first file|");
    EXPECT_EQ(completed({"-in", ""}), "completion|file|first file|show|");
    EXPECT_EQ(completed({"-in", "="}), "completion|file|first file|show|");
    EXPECT_EQ(completed({"stop", "-in", "=", "firs"}), "first file|");
    EXPECT_EQ(completed({"-out", "firs"}), "first file|");
}

TEST_F(BashCompletion, HasNothingForOtherArguments)
{
    EXPECT_EQ(completed({"-level", "s"}), "");
    EXPECT_EQ(completed({"-level", "=", "s"}), "");
    EXPECT_EQ(completed({"show", "-level", "fi"}), "");
    EXPECT_EQ(completed({"show", "-level", "-"}), "");
}

TEST_F(BashCompletion, TakesNoArgumentForACommand)
{
    EXPECT_EQ(completed({"-in", "show", "s"}), "show|stop|");
    EXPECT_EQ(completed({"-in", "=", "show", "s"}), "show|stop|");
    EXPECT_EQ(completed({"-level", "keep", ":", "80", "s"}), "show|stop|");
    EXPECT_EQ(completed({"-level", "=", "keep", ":", "80", "stop", "-"}), "-dry|");
    EXPECT_EQ(completed({"-dry", "s"}), "show|stop|");
}

TEST_F(BashCompletion, HasALineForEachCommand)
{
    EXPECT_NE(bash_completion().find("    case $command in\n"
                                     "    show) options='-in -level -dry' ;;\n"
                                     "    keep) options='-level -out -dry' ;;\n"
                                     "    stop) options='-dry' ;;\n"
                                     "    *) options='-in -level -out -dry' ;;\n"
                                     "    esac\n"),
              std::string::npos);
}

// So that readline quotes their blanks and marks folders.
TEST_F(BashCompletion, SaysThatTheWordsAreFiles)
{
    EXPECT_EQ(said("compopt() { echo \"$1 $2\"; }\n_corvella_files fi"), "-o filenames\n");
}

} // namespace
