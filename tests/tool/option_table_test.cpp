/// \file
/// What is asked of the tables of commands and options.
#include "tool/option_table.h"

#include <gtest/gtest.h>

namespace {

using namespace corvella;

/// The options' names, each with a blank behind it, or with "=" and a blank where it takes an
/// argument.
std::string names_of(const std::vector<program_option> &options)
{
    std::string names;
    for (const program_option &option : options) {
        names += std::string(option.name) + (option.argument != nullptr ? "= " : " ");
    }
    return names;
}

void expect_sentence(const std::string &text, const char *name)
{
    EXPECT_GT(text.size(), 10U) << name;
    EXPECT_EQ(text.back(), '.') << name;
}

TEST(OptionTable, KnowsTheCommandsByTheirWholeNames)
{
    EXPECT_EQ(meaning_of_command("get"), COMMAND_GET);
    EXPECT_EQ(meaning_of_command("post"), COMMAND_POST);
    EXPECT_EQ(meaning_of_command("update"), COMMAND_UPDATE);
    EXPECT_EQ(meaning_of_command("describe"), COMMAND_DESCRIBE);
    EXPECT_EQ(meaning_of_command("open"), COMMAND_OPEN);
    for (const char *const name : {"", "ge", "gets", "GET", "-get", "help"}) {
        EXPECT_EQ(meaning_of_command(name), NO_COMMAND) << name;
    }
}

TEST(OptionTable, HasTheOptionsOfEachCommandInTheirOrder)
{
    const std::string web = "proxy= proxy-user= proxy-pass= user= pass= max-time= quiet ";
    const std::string request = web + "output= header verbose keep-partial keep-body ";
    const std::string general = "automated help ";
    EXPECT_EQ(names_of(options_of("get")), request + general);
    EXPECT_EQ(names_of(options_of("post")), request + "data= type= " + general);
    EXPECT_EQ(names_of(options_of("update")),
              web + "product= productline= version= version-name= os= os-version= machine-id= "
                    "arch= open automated help ");
    EXPECT_EQ(names_of(options_of("describe")), "automated help ");
    EXPECT_EQ(names_of(options_of("open")), "automated help ");
    EXPECT_EQ(names_of(options_of("")), "automated help version ");
}

TEST(OptionTable, DescribesEverythingInASentence)
{
    for (const program_command &command : program_commands()) {
        expect_sentence(command.description, command.name);
    }
    for (const option_group &group : option_groups()) {
        for (const program_option &option : group) {
            expect_sentence(option.description, option.name);
            EXPECT_STRNE(option.argument, "") << option.name;
        }
    }
}

} // namespace
