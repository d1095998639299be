/// \file
/// What -output makes of a link.
#include <climits>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Names = std::vector<std::string>;

bool is_link(const std::string &path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

TEST(OutputLink, IsWrittenThrough)
{
    const TemporaryDirectory directory;
    mkdir(directory.path("folder").c_str(), 0700);
    directory.write("folder/page", "old");
    ASSERT_EQ(symlink("folder/page", directory.path("link").c_str()), 0);
    ASSERT_EQ(symlink(directory.path("link").c_str(), directory.path("second").c_str()), 0);
    for (const char *const link : {"link", "second"}) {
        EXPECT_EQ(get_into(directory.path(link), link).exit_status, 0);
        EXPECT_TRUE(is_link(directory.path(link)));
        EXPECT_EQ(directory.read("folder/page"), link);
    }
    EXPECT_EQ(directory.names(), (Names{"folder", "link", "second"}));
}

TEST(OutputLink, HasTheFileMadeThatItLeadsTo)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(symlink("page", directory.path("link").c_str()), 0);
    EXPECT_EQ(get_into(directory.path("link"), "body").exit_status, 0);
    EXPECT_TRUE(is_link(directory.path("link")));
    EXPECT_EQ(directory.read("page"), "body");
}

// The system follows no more, and then there is nothing that could be replaced.
TEST(OutputLink, IsFollowedAsOftenAsTheSystemFollows)
{
    const TemporaryDirectory directory;
    directory.write("0", "old");
    for (int i = 1; i <= 41; ++i) {
        ASSERT_EQ(symlink(std::to_string(i - 1).c_str(), directory.path(std::to_string(i)).c_str()),
                  0);
    }
    EXPECT_EQ(get_into(directory.path("40"), "new").exit_status, 0);
    EXPECT_EQ(directory.read("0"), "new");
    const ProgramResult result = get_into(directory.path("41"), "newer");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Too many levels of symbolic links")) << result.err;
    EXPECT_EQ(directory.read("0"), "new");
    EXPECT_TRUE(is_link(directory.path("1")));
}

TEST(OutputLink, ThatLeadsNowhereStaysAsItIs)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(symlink("b", directory.path("a").c_str()), 0);
    ASSERT_EQ(symlink("a", directory.path("b").c_str()), 0);
    const ProgramResult result = get_into(directory.path("a"), "body");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Too many levels of symbolic links")) << result.err;
    EXPECT_EQ(directory.names(), (Names{"a", "b"}));
    EXPECT_TRUE(is_link(directory.path("a")));
    EXPECT_TRUE(is_link(directory.path("b")));
}

// The system opens the file behind it, but the name of a new file beside that has no room in a
// path.
TEST(OutputLink, ThatIsTheLongestOfAllStaysAsItIs)
{
    const TemporaryDirectory directory;
    directory.write("pages", "old");
    std::string target = "pages";
    while (target.size() < PATH_MAX - 1) {
        target.insert(0, "./");
    }
    ASSERT_EQ(symlink(target.c_str(), directory.path("link").c_str()), 0);
    const ProgramResult result = get_into(directory.path("link"), "new");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "File name too long")) << result.err;
    EXPECT_TRUE(is_link(directory.path("link")));
    EXPECT_EQ(directory.read("pages"), "old");
}

} // namespace
