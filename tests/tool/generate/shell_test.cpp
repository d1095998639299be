/// \file
/// What the completions have in common.
#include "tool/generate/shell.h"

#include <gtest/gtest.h>

namespace {

using namespace corvella;

TEST(AllOptions, HaveEachNameOnce)
{
    std::string names;
    for (const program_option &option : all_options()) {
        names += std::string(option.name) + " ";
    }
    EXPECT_EQ(names, "in level out dry ");
}

TEST(AllOptions, HaveTheOneThatTakesAnArgument)
{
    EXPECT_STREQ(all_options().at(1).argument, "a:b\\c");
}

TEST(WithArgumentOptions, PutsThePatternOfThoseInPlace)
{
    EXPECT_EQ(with_argument_options("(ARGUMENT_OPTIONS) ;;\n"), "(-in | -level | -out) ;;\n");
    EXPECT_EQ(with_argument_options("ARGUMENT_OPTIONS"), "-in | -level | -out");
}

TEST(IsFile, IsTrueOfWhatTheTableCallsFiles)
{
    EXPECT_TRUE(is_file("FILE"));
    EXPECT_TRUE(is_file("TARGET"));
    for (const char *const other : {"", "URL", "NAME", "FILES", "FIL", "TARGET...", "file"}) {
        EXPECT_FALSE(is_file(other)) << other;
    }
}

} // namespace
