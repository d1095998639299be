#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/frameworks/stand_ins.h"
#include "tests/platform/guarded_buffer.h"

namespace {

using Texts = std::vector<std::string>;

constexpr int bundle_itself = 0;
constexpr int resource = 5;

BundleParts tool_parts()
{
    return {"/Apps/Tool.app",
            "/Apps/Tool.app/Contents/MacOS/Tool",
            "/Apps/Tool.app/Contents",
            "/Apps/Tool.app/Contents/Resources",
            "/Apps/Tool.app/Contents/PlugIns",
            {{"help.html", "/Apps/Tool.app/Contents/Resources/help.html"}}};
}

class MainBundlePath : public FrameworksTest {
protected:
    GuardedBuffer buffer{256};

    char *path_of_kind(int kind, const char *name = nullptr)
    {
        return main_bundle_path(buffer.data(), buffer.size(), kind, name);
    }
};

TEST_F(MainBundlePath, FindsEachKindOfPath)
{
    struct Case {
        int kind;
        const char *path;
    };
    set_main_bundle(tool_parts());
    for (const Case &c :
         {Case{0, "/Apps/Tool.app"}, Case{1, "/Apps/Tool.app/Contents/MacOS/Tool"},
          Case{2, "Contents"}, Case{3, "Contents/Resources"}, Case{4, "Contents/PlugIns"}}) {
        SCOPED_TRACE(c.kind);
        EXPECT_EQ(path_of_kind(c.kind), buffer.data());
        EXPECT_EQ(buffer.text(), c.path);
    }
}

TEST_F(MainBundlePath, GivesAbsoluteDirectoriesOutsideABundleButPlugIns)
{
    set_main_bundle({"/bin", "/bin/tool", "/bin", "/bin", "/bin/PlugIns", {}});
    for (const int kind : {0, 2, 3}) {
        SCOPED_TRACE(kind);
        path_of_kind(kind);
        EXPECT_EQ(buffer.text(), "/bin");
    }
    path_of_kind(4);
    EXPECT_EQ(buffer.text(), "PlugIns");
}

TEST_F(MainBundlePath, TakesAnyOtherKindForTheBundleItself)
{
    set_main_bundle(tool_parts());
    for (const int kind : {6, 9, 255, -1, -5, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(kind);
        buffer = GuardedBuffer(256);
        EXPECT_EQ(path_of_kind(kind), buffer.data());
        EXPECT_EQ(buffer.text(), "/Apps/Tool.app");
    }
}

TEST_F(MainBundlePath, IgnoresTheNameForEveryKindButAResource)
{
    set_main_bundle(tool_parts());
    for (const int kind : {0, 1, 2, 3, 4, 6}) {
        path_of_kind(kind, "help.html");
        EXPECT_NE(buffer.text(), "/Apps/Tool.app/Contents/Resources/help.html");
    }
    EXPECT_TRUE(stand_ins.calls_of("CFStringCreateWithCString").empty());
}

// Deliberate: the string of the name is not released.
TEST_F(MainBundlePath, FindsAResourceAndLeavesItsNameOver)
{
    set_main_bundle(tool_parts());
    EXPECT_EQ(path_of_kind(resource, "help.html"), buffer.data());
    EXPECT_EQ(buffer.text(), "/Apps/Tool.app/Contents/Resources/help.html");
    expected_left_overs = {"string help.html"};
}

TEST_F(MainBundlePath, AsksForAResourceOfNoTypeAndNoSubdirectory)
{
    set_main_bundle(tool_parts());
    path_of_kind(resource, "help.html");
    const std::vector<Texts> expected = {{"main", "help.html", "null", "null"}};
    EXPECT_EQ(stand_ins.calls_of("CFBundleCopyResourceURL"), expected);
    expected_left_overs = {"string help.html"};
}

TEST_F(MainBundlePath, IsNullForAResourceThatIsNotFound)
{
    set_main_bundle(tool_parts());
    EXPECT_EQ(path_of_kind(resource, "missing"), nullptr);
    expected_left_overs = {"string missing"};
}

TEST_F(MainBundlePath, ReadsTheNameInTheSystemsEncoding)
{
    stand_ins.system_encoding = kCFStringEncodingISOLatin1;
    set_main_bundle({"/T", "", "", "", "", {{"caf\xc3\xa9", "/T/menu"}}});
    EXPECT_EQ(path_of_kind(resource, "caf\xe9"), buffer.data());
    EXPECT_EQ(buffer.text(), "/T/menu");
    expected_left_overs = {"string caf\xc3\xa9"};
}

TEST_F(MainBundlePath, IsNullForANameThatTheEncodingCannotRepresent)
{
    set_main_bundle(tool_parts());
    EXPECT_EQ(path_of_kind(resource, "caf\xe9"), nullptr);
}

TEST_F(MainBundlePath, IsNullWithoutAMainBundle)
{
    for (const int kind : {0, 1, 2, 3, 4, 9}) {
        EXPECT_EQ(path_of_kind(kind), nullptr);
    }
}

TEST_F(MainBundlePath, IsNullForAResourceWithoutAMainBundle)
{
    EXPECT_EQ(path_of_kind(resource, "help.html"), nullptr);
}

TEST_F(MainBundlePath, IsNullWhenThereIsNoSuchPart)
{
    set_main_bundle({});
    for (const int kind : {0, 1, 2, 3, 4, 9}) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(path_of_kind(kind), nullptr);
    }
}

TEST_F(MainBundlePath, IsNullWhenTheUrlHasNoPath)
{
    set_main_bundle(tool_parts());
    stand_ins.failing = {"CFURLCopyFileSystemPath"};
    for (const int kind : {0, 1, 2, 3, 4, 9}) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(path_of_kind(kind), nullptr);
    }
    EXPECT_TRUE(stand_ins.calls_of("CFStringGetCString").empty());
}

TEST_F(MainBundlePath, AsksForAPosixPathInTheSystemsEncoding)
{
    stand_ins.system_encoding = kCFStringEncodingISOLatin1;
    set_main_bundle({"/\xc3\xa9t\xc3\xa9", "", "", "", "", {}});
    EXPECT_EQ(path_of_kind(bundle_itself), buffer.data());
    EXPECT_EQ(buffer.text(), "/\xe9t\xe9");
    const std::vector<Texts> posix_style = {{"file:///\xc3\xa9t\xc3\xa9", "0"}};
    EXPECT_EQ(stand_ins.calls_of("CFURLCopyFileSystemPath"), posix_style);
    const std::vector<Texts> copy = {{"/\xc3\xa9t\xc3\xa9", "256", "0x00000201"}};
    EXPECT_EQ(stand_ins.calls_of("CFStringGetCString"), copy);
}

TEST_F(MainBundlePath, FillsABufferThatIsJustLongEnough)
{
    set_main_bundle(tool_parts());
    GuardedBuffer exact(sizeof "/Apps/Tool.app");
    EXPECT_EQ(main_bundle_path(exact.data(), exact.size(), bundle_itself, nullptr), exact.data());
    EXPECT_EQ(exact.text(), "/Apps/Tool.app");
    EXPECT_TRUE(exact.is_guard_intact());
}

// Deliberate: a path that does not fit is not reported.
TEST_F(MainBundlePath, IsTheBufferAlsoWhenThePathDoesNotFit)
{
    set_main_bundle(tool_parts());
    for (const std::size_t size : {sizeof "/Apps/Tool.app" - 1, std::size_t{2}, std::size_t{1}}) {
        SCOPED_TRACE(size);
        GuardedBuffer tight(size);
        EXPECT_EQ(main_bundle_path(tight.data(), tight.size(), bundle_itself, nullptr),
                  tight.data());
        EXPECT_EQ(tight.text(), "");
        EXPECT_TRUE(tight.is_guard_intact());
    }
}

TEST_F(MainBundlePath, WritesNothingIntoABufferOfNoBytes)
{
    set_main_bundle(tool_parts());
    for (const int size : {0, -1, INT_MIN}) {
        GuardedBuffer none(0);
        EXPECT_EQ(main_bundle_path(none.data(), size, bundle_itself, nullptr), none.data());
        EXPECT_TRUE(none.is_untouched()) << size;
    }
}

TEST_F(MainBundlePath, IsTheBufferAlsoWhenTheEncodingLacksACharacter)
{
    stand_ins.system_encoding = kCFStringEncodingASCII;
    set_main_bundle({"/caf\xc3\xa9", "", "", "", "", {}});
    EXPECT_EQ(path_of_kind(bundle_itself), buffer.data());
    EXPECT_EQ(buffer.text(), "");
}

TEST_F(MainBundlePath, LooksForTheBundleAtEveryCall)
{
    set_main_bundle(tool_parts());
    path_of_kind(bundle_itself);
    set_main_bundle({"/Other.app", "", "", "", "", {}});
    EXPECT_EQ(path_of_kind(bundle_itself), buffer.data());
    EXPECT_EQ(buffer.text(), "/Other.app");
}

} // namespace
