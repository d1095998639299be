#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <dirent.h>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

using Texts = std::vector<std::string>;

Texts called_back;
std::vector<std::intptr_t> user_values;
std::vector<std::pair<int, std::string>> messages;

int collect(const char *path, std::intptr_t user)
{
    called_back.emplace_back(path);
    user_values.push_back(user);
    return static_cast<int>(called_back.size()) - 2; // negative, zero and positive in turn
}

int collect_and_remove(const char *path, std::intptr_t user)
{
    EXPECT_EQ(std::remove(path), 0) << path;
    return collect(path, user);
}

int throw_at_once(const char *, std::intptr_t)
{
    throw std::runtime_error("from the callback");
}

int collect_message(int level, const char *text)
{
    messages.emplace_back(level, text);
    return 0;
}

/// The number that the next descriptor gets.
int next_descriptor()
{
    const int descriptor = dup(STDIN_FILENO);
    close(descriptor);
    return descriptor;
}

class FileWalk : public testing::Test {
protected:
    FileWalk()
    {
        called_back.clear();
        user_values.clear();
        messages.clear();
        set_message_hook(nullptr);
        set_print_stream(nullptr);
    }
    ~FileWalk() override
    {
        set_message_hook(nullptr);
    }

    TemporaryDirectory directory;

    /// The paths of the files that a walk calls back for, in alphabetical order.
    static Texts walk(const std::string &path)
    {
        called_back.clear();
        for_each_regular_file(path.c_str(), collect, 0);
        Texts sorted = called_back;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }
    Texts paths_of(Texts names) const
    {
        std::sort(names.begin(), names.end());
        for (std::string &name : names) {
            name = directory.path(name);
        }
        return names;
    }

    /// Makes directories below the own one until the path of the last has \p length characters.
    std::string make_directory_of_length(std::size_t length) const
    {
        std::string path = directory.path();
        while (path.size() < length) {
            const std::size_t missing = length - path.size() - 1;
            // Never one character short of the length, where no name would fit any more.
            const std::size_t name = missing > 202 ? 200 : missing > 100 ? missing / 2 : missing;
            path += "/" + std::string(name, 'd');
            EXPECT_TRUE(mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) << path;
        }
        return path;
    }
};

TEST_F(FileWalk, CallsBackForRegularFilesAndLinksToThem)
{
    make_file(directory.path("a"));
    make_file(directory.path(".hidden"));
    ASSERT_EQ(mkdir(directory.path("d").c_str(), 0700), 0);
    ASSERT_EQ(symlink("a", directory.path("l").c_str()), 0);
    EXPECT_EQ(walk(directory.path()), paths_of({"a", ".hidden", "l"}));
}

TEST_F(FileWalk, PassesOverEveryOtherKind)
{
    ASSERT_EQ(mkdir(directory.path("d").c_str(), 0700), 0);
    ASSERT_EQ(symlink("d", directory.path("link-to-directory").c_str()), 0);
    ASSERT_EQ(symlink("missing", directory.path("dangling").c_str()), 0);
    ASSERT_EQ(symlink("loop", directory.path("loop").c_str()), 0);
    ASSERT_EQ(symlink("/dev/null", directory.path("link-to-device").c_str()), 0);
    ASSERT_EQ(mkfifo(directory.path("fifo").c_str(), 0600), 0);
    const CapturedOutput output =
        capture_output([&] { EXPECT_EQ(walk(directory.path()), Texts{}); });
    EXPECT_EQ(output.out + output.err, "");
}

TEST_F(FileWalk, DoesNotDescend)
{
    ASSERT_EQ(mkdir(directory.path("d").c_str(), 0700), 0);
    make_file(directory.path("d/inner"));
    make_file(directory.path("outer"));
    EXPECT_EQ(walk(directory.path()), paths_of({"outer"}));
}

TEST_F(FileWalk, SkipsNoNameThatOnlyBeginsWithDots)
{
    const Texts names = {"...", ".a", "..a", "....", ".. ", ". ", "a.", "a.."};
    for (const std::string &name : names) {
        make_file(directory.path(name));
    }
    EXPECT_EQ(walk(directory.path()), paths_of(names));
}

TEST_F(FileWalk, TakesAnyBytesForAName)
{
    const Texts names = {"a b", "line\nfeed", "\xff\xfe", "%s%n", "\x01", "-", "\\"};
    for (const std::string &name : names) {
        make_file(directory.path(name));
    }
    EXPECT_EQ(walk(directory.path()), paths_of(names));
}

TEST_F(FileWalk, CallsBackInTheOrderOfTheSystem)
{
    for (const char *const name : {"zebra", "apple", "mango", "1", "b", "Z", ".x", "kiwi"}) {
        make_file(directory.path(name));
    }
    Texts order;
    DIR *const entries = opendir(directory.path().c_str());
    while (const dirent *const entry = readdir(entries)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            order.push_back(directory.path(name));
        }
    }
    closedir(entries);
    walk(directory.path());
    EXPECT_EQ(called_back, order);
}

TEST_F(FileWalk, CallsBackForNothingInAnEmptyDirectory)
{
    EXPECT_EQ(walk(directory.path()), Texts{});
}

TEST_F(FileWalk, HandsTheUserValueOnUnchanged)
{
    make_file(directory.path("a"));
    for (const std::intptr_t value : {std::intptr_t{0}, std::intptr_t{-1}, INTPTR_MAX, INTPTR_MIN,
                                      reinterpret_cast<std::intptr_t>(this)}) {
        user_values.clear();
        for_each_regular_file(directory.path().c_str(), collect, value);
        EXPECT_EQ(user_values, std::vector<std::intptr_t>{value});
    }
}

TEST_F(FileWalk, IgnoresTheResultOfTheCallback)
{
    Texts names;
    for (char name = 'a'; name < 'j'; ++name) {
        names.emplace_back(1, name);
        make_file(directory.path(names.back()));
    }
    EXPECT_EQ(walk(directory.path()), paths_of(names));
}

TEST_F(FileWalk, ComposesThePathOfTheDirectoryAsItStands)
{
    make_file(directory.path("a"));
    EXPECT_EQ(walk(directory.path() + "/"), Texts{directory.path() + "//a"});
    EXPECT_EQ(walk(directory.path() + "/."), Texts{directory.path() + "/./a"});
}

TEST_F(FileWalk, FollowsALinkToTheDirectory)
{
    ASSERT_EQ(mkdir(directory.path("d").c_str(), 0700), 0);
    make_file(directory.path("d/a"));
    ASSERT_EQ(symlink("d", directory.path("link").c_str()), 0);
    EXPECT_EQ(walk(directory.path("link")), Texts{directory.path("link/a")});
}

TEST_F(FileWalk, LetsTheCallbackRemoveEveryFile)
{
    constexpr int count = 300;
    for (int i = 0; i < count; ++i) {
        make_file(directory.path("file with a rather long name " + std::to_string(i)), "");
    }
    for_each_regular_file(directory.path().c_str(), collect_and_remove, 0);
    EXPECT_EQ(called_back.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(walk(directory.path()), Texts{});
}

TEST_F(FileWalk, CallsBackForFilesOfTwoGibibytesAndMore)
{
    const std::string file = make_file(directory.path("large"));
    if (truncate(file.c_str(), static_cast<off_t>(3) << 30) != 0) {
        GTEST_SKIP() << "no room for a file with holes";
    }
    EXPECT_EQ(walk(directory.path()), Texts{file});
}

TEST_F(FileWalk, ClosesTheDirectory)
{
    make_file(directory.path("a"));
    const int before = next_descriptor();
    walk(directory.path());
    EXPECT_EQ(next_descriptor(), before);
}

TEST_F(FileWalk, LetsAnExceptionOfTheCallbackThroughAndClosesTheDirectory)
{
    make_file(directory.path("a"));
    const int before = next_descriptor();
    EXPECT_THROW(for_each_regular_file(directory.path().c_str(), throw_at_once, 0),
                 std::runtime_error);
    EXPECT_EQ(next_descriptor(), before);
}

TEST_F(FileWalk, MayRunWithinACallback)
{
    make_file(directory.path("a"));
    ASSERT_EQ(mkdir(directory.path("d").c_str(), 0700), 0);
    make_file(directory.path("d/inner"));
    const std::string inner = directory.path("d");
    for_each_regular_file(
        directory.path().c_str(),
        [](const char *path, std::intptr_t user) {
            for_each_regular_file(reinterpret_cast<const char *>(user), collect, 0);
            return collect(path, 0);
        },
        reinterpret_cast<std::intptr_t>(inner.c_str()));
    const Texts expected = {directory.path("d/inner"), directory.path("a")};
    EXPECT_EQ(called_back, expected);
}

TEST_F(FileWalk, ReportsADirectoryThatItCannotOpenAtLevelEight)
{
    const std::string file = make_file(directory.path("file"));
    struct Case {
        std::string path;
        const char *reason;
    };
    for (const Case &c : {Case{"/nonexistent/%s", "No such file or directory"},
                          Case{"", "No such file or directory"}, Case{file, "Not a directory"}}) {
        SCOPED_TRACE(c.path);
        const CapturedOutput output = capture_output([&] { EXPECT_EQ(walk(c.path), Texts{}); });
        EXPECT_EQ(output.err,
                  reported("Warning", "Can't open directory " + c.path + ": error " + c.reason));
        EXPECT_EQ(output.out, "");
    }
}

TEST_F(FileWalk, HandsTheMessageHookTheWholeText)
{
    set_message_hook(collect_message);
    capture_output([] { walk("/nonexistent"); });
    const std::vector<std::pair<int, std::string>> expected = {
        {8, "Can't open directory /nonexistent: error No such file or directory\n"}};
    EXPECT_EQ(messages, expected);
}

TEST_F(FileWalk, CallsBackWithAPathThatJustFits)
{
    const std::string deep = make_directory_of_length(1023 - 4);
    const std::string file = make_file(deep + "/abc");
    ASSERT_EQ(file.size(), 1023u);
    const CapturedOutput output = capture_output([&] { EXPECT_EQ(walk(deep), Texts{file}); });
    EXPECT_EQ(output.err, "");
}

TEST_F(FileWalk, SkipsAPathThatDoesNotFitAndReportsIt)
{
    const std::string deep = make_directory_of_length(1023 - 4);
    const std::string fitting = make_file(deep + "/abc");
    const std::string one_too_long = make_file(deep + "/abcd");
    ASSERT_EQ(one_too_long.size(), 1024u);
    set_message_hook(collect_message);
    capture_output([&] { EXPECT_EQ(walk(deep), Texts{fitting}); });
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].first, 8);
    // A message has room for 1023 characters.
    EXPECT_EQ(messages[0].second, ("Path too long: " + one_too_long + "\n").substr(0, 1023));
}

TEST_F(FileWalk, CallsBackOnceForEachPathThatFitsAmongOnesThatDoNot)
{
    const std::string deep = make_directory_of_length(1023 - 4);
    std::multiset<std::string> fitting;
    for (char c = 'a'; c <= 'h'; ++c) {
        fitting.insert(make_file(deep + "/ab" + c));
        make_file(deep + "/abc" + c);
    }
    set_message_hook(collect_message);
    Texts found;
    capture_output([&] { found = walk(deep); });
    EXPECT_EQ(std::multiset<std::string>(found.begin(), found.end()), fitting);
    EXPECT_EQ(messages.size(), fitting.size());
}

TEST_F(FileWalk, ReportsALongNameInAShortDirectory)
{
    // The longest name that file systems have, in the shortest directory where it does not fit.
    const std::string deep = make_directory_of_length(1024 - 1 - 255);
    const std::string path = make_file(deep + "/" + std::string(254, 'n') + "e");
    ASSERT_EQ(path.size(), 1024u);
    set_message_hook(collect_message);
    capture_output([&] { EXPECT_EQ(walk(deep), Texts{}); });
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].second, ("Path too long: " + path + "\n").substr(0, 1023));
}

TEST_F(FileWalk, SkipsEveryPathOfADirectoryThatLeavesNoRoomForAName)
{
    for (std::size_t length = 1020; length <= 1030; ++length) {
        const std::string deep = make_directory_of_length(length);
        const Texts fitting = length + 2 <= 1023 ? Texts{make_file(deep + "/a")} : Texts{};
        make_file(deep + "/" + std::string(4, 'b'));
        messages.clear();
        set_message_hook(collect_message);
        capture_output([&] { EXPECT_EQ(walk(deep), fitting) << length; });
        EXPECT_EQ(messages.size(), 1u) << length;
    }
}

TEST_F(FileWalk, SkipsEveryPathOfADirectoryThatIsTooLongItself)
{
    const std::string deep = make_directory_of_length(1500);
    make_file(deep + "/a");
    ASSERT_EQ(mkdir((deep + "/b").c_str(), 0700), 0);
    set_message_hook(collect_message);
    capture_output([&] { EXPECT_EQ(walk(deep), Texts{}); });
    EXPECT_EQ(messages.size(), 2u);
}

} // namespace
