#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/frameworks/stand_ins.h"
#include "tests/platform/guarded_buffer.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char host_identifier[] = "com.morvane.CorvellaHostPlugin";
static_assert(sizeof host_identifier - 1 == 30);

BundleParts host_parts()
{
    return {"/Plug-ins/Host.plugin", "/x", "/y", "/z", "/p", {{"icon", "/Plug-ins/icon.png"}}};
}

class HostBundlePath : public FrameworksTest {
protected:
    GuardedBuffer buffer{256};

    char *path()
    {
        return host_bundle_path(buffer.data(), buffer.size());
    }
};

class HostBundleResourcePath : public FrameworksTest {
protected:
    GuardedBuffer buffer{256};

    int path_of(const char *name)
    {
        return host_bundle_resource_path(name, buffer.data(), buffer.size());
    }
};

TEST_F(HostBundlePath, IsTheDirectoryOfTheHostPlugIn)
{
    load_bundle(host_identifier, host_parts());
    EXPECT_EQ(path(), buffer.data());
    EXPECT_EQ(buffer.text(), "/Plug-ins/Host.plugin");
}

TEST_F(HostBundlePath, IsNullWhenTheHostPlugInIsNotLoaded)
{
    set_main_bundle(host_parts());
    load_bundle("com.morvane.Other", host_parts());
    EXPECT_EQ(path(), nullptr);
    const std::vector<Texts> asked = {{host_identifier}};
    EXPECT_EQ(stand_ins.calls_of("CFBundleGetBundleWithIdentifier"), asked);
}

TEST_F(HostBundlePath, IsNullWhenTheBundleHasNoUrl)
{
    load_bundle(host_identifier, {});
    EXPECT_EQ(path(), nullptr);
}

TEST_F(HostBundlePath, IsNullWhenTheUrlHasNoPath)
{
    load_bundle(host_identifier, host_parts());
    stand_ins.failing = {"CFURLCopyFileSystemPath"};
    EXPECT_EQ(path(), nullptr);
}

TEST_F(HostBundlePath, AsksForAPosixPathInTheSystemsEncoding)
{
    stand_ins.system_encoding = kCFStringEncodingISOLatin1;
    load_bundle(host_identifier, {"/\xc3\xa9t\xc3\xa9", "", "", "", "", {}});
    EXPECT_EQ(path(), buffer.data());
    EXPECT_EQ(buffer.text(), "/\xe9t\xe9");
    const std::vector<Texts> posix_style = {{"file:///\xc3\xa9t\xc3\xa9", "0"}};
    EXPECT_EQ(stand_ins.calls_of("CFURLCopyFileSystemPath"), posix_style);
}

// Deliberate: a path that does not fit is not reported.
TEST_F(HostBundlePath, IsTheBufferAlsoWhenThePathDoesNotFit)
{
    load_bundle(host_identifier, host_parts());
    GuardedBuffer tight(sizeof "/Plug-ins/Host.plugin" - 1);
    EXPECT_EQ(host_bundle_path(tight.data(), tight.size()), tight.data());
    EXPECT_EQ(tight.text(), "");
    EXPECT_TRUE(tight.is_guard_intact());
}

TEST_F(HostBundlePath, LooksForTheBundleAtEveryCall)
{
    load_bundle(host_identifier, host_parts());
    path();
    unload_bundle(host_identifier);
    EXPECT_EQ(path(), nullptr);
    load_bundle(host_identifier, {"/Elsewhere", "", "", "", "", {}});
    EXPECT_EQ(path(), buffer.data());
    EXPECT_EQ(buffer.text(), "/Elsewhere");
}

TEST_F(HostBundleResourcePath, FindsAResource)
{
    load_bundle(host_identifier, host_parts());
    EXPECT_EQ(path_of("icon"), 0);
    EXPECT_EQ(buffer.text(), "/Plug-ins/icon.png");
}

TEST_F(HostBundleResourcePath, AsksForAResourceOfNoTypeAndNoSubdirectory)
{
    load_bundle(host_identifier, host_parts());
    path_of("icon");
    const std::vector<Texts> expected = {{host_identifier, "icon", "null", "null"}};
    EXPECT_EQ(stand_ins.calls_of("CFBundleCopyResourceURL"), expected);
}

TEST_F(HostBundleResourcePath, LeavesTheBufferAloneWhenTheHostPlugInIsNotLoaded)
{
    set_main_bundle(host_parts());
    EXPECT_EQ(path_of("icon"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

TEST_F(HostBundleResourcePath, LeavesTheBufferAloneForAResourceThatIsNotFound)
{
    load_bundle(host_identifier, host_parts());
    EXPECT_EQ(path_of("missing"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

TEST_F(HostBundleResourcePath, LeavesTheBufferAloneWhenTheUrlHasNoPath)
{
    load_bundle(host_identifier, host_parts());
    stand_ins.failing = {"CFURLCopyFileSystemPath"};
    EXPECT_EQ(path_of("icon"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

TEST_F(HostBundleResourcePath, LeavesTheBufferAloneForANameThatTheEncodingCannotRepresent)
{
    load_bundle(host_identifier, host_parts());
    EXPECT_EQ(path_of("\xe9t\xe9"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

TEST_F(HostBundleResourcePath, LeavesTheBufferAloneWhenNoStringCanBeMade)
{
    load_bundle(host_identifier, host_parts());
    stand_ins.failing = {"CFStringCreateWithCString"};
    EXPECT_EQ(path_of("icon"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

TEST_F(HostBundleResourcePath, ReadsTheNameAndWritesThePathInTheSystemsEncoding)
{
    stand_ins.system_encoding = kCFStringEncodingISOLatin1;
    load_bundle(host_identifier, {"/H", "", "", "", "", {{"\xc3\xa9", "/H/\xc3\xa8"}}});
    EXPECT_EQ(path_of("\xe9"), 0);
    EXPECT_EQ(buffer.text(), "/H/\xe8");
    ASSERT_EQ(stand_ins.calls_of("CFURLCopyFileSystemPath").size(), 1u);
    EXPECT_EQ(stand_ins.calls_of("CFURLCopyFileSystemPath")[0][1], "0");
}

TEST_F(HostBundleResourcePath, StaysWithinTheBuffer)
{
    load_bundle(host_identifier, host_parts());
    GuardedBuffer exact(sizeof "/Plug-ins/icon.png");
    EXPECT_EQ(host_bundle_resource_path("icon", exact.data(), exact.size()), 0);
    EXPECT_EQ(exact.text(), "/Plug-ins/icon.png");
    EXPECT_TRUE(exact.is_guard_intact());

    GuardedBuffer tight(sizeof "/Plug-ins/icon.png" - 1);
    EXPECT_EQ(host_bundle_resource_path("icon", tight.data(), tight.size()), 0);
    EXPECT_TRUE(tight.is_guard_intact());
}

TEST_F(HostBundleResourcePath, LooksForTheBundleAtEveryCall)
{
    load_bundle(host_identifier, host_parts());
    path_of("icon");
    unload_bundle(host_identifier);
    buffer = GuardedBuffer(256);
    EXPECT_EQ(path_of("icon"), 0);
    EXPECT_TRUE(buffer.is_untouched());
}

} // namespace
