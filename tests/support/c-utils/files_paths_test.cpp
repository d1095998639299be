// Testing, removing and naming.
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#if __has_include(<sys/sysmacros.h>) // makedev() is in <sys/types.h> elsewhere
#include <sys/sysmacros.h>
#endif

#include "support/c-utils.h"
#include "tests/harness/capture.h"
#include "tests/support/c-utils/file_test_tools.h"

namespace {

class FileExists : public testing::Test {
protected:
    TemporaryDirectory directory;
};

class RemovePath : public testing::Test {
protected:
    TemporaryDirectory directory;

    /// The errno of a removal that fails; 0 when it does not.
    static int removal_error(const std::string &path)
    {
        errno = 0;
        const int result = remove_path(path.c_str());
        const int error = errno;
        EXPECT_TRUE(result == 0 || result == -1) << result;
        return result == 0 ? 0 : error;
    }
};

bool make_socket(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool bound = descriptor >= 0 && bind(descriptor, reinterpret_cast<sockaddr *>(&address),
                                               sizeof address) == 0;
    close(descriptor);
    return bound;
}

TEST_F(FileExists, HasNothingAtNullAndTheEmptyPath)
{
    EXPECT_EQ(file_exists(nullptr), 0);
    EXPECT_EQ(file_exists(""), 0);
}

TEST_F(FileExists, FindsEveryKindOfObject)
{
    const std::string file = make_file(directory.path("file"), "");
    const std::string fifo = directory.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(file_exists(file.c_str()), 1);
    EXPECT_EQ(file_exists(fifo.c_str()), 1);
    EXPECT_EQ(file_exists(directory.path().c_str()), 1);
    EXPECT_EQ(file_exists("/"), 1);
    EXPECT_EQ(file_exists("."), 1);
    EXPECT_EQ(file_exists("/dev/null"), 1);
}

TEST_F(FileExists, FindsAFileThatMayNotBeRead)
{
    const std::string file = make_file(directory.path("file"));
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    EXPECT_EQ(file_exists(file.c_str()), 1);
}

TEST_F(FileExists, HasNothingWhereNothingIs)
{
    const std::string file = make_file(directory.path("file"));
    EXPECT_EQ(file_exists(directory.path("missing").c_str()), 0);
    EXPECT_EQ(file_exists("/nonexistent/x"), 0);
    EXPECT_EQ(file_exists((file + "/x").c_str()), 0);
    EXPECT_EQ(file_exists(directory.path(std::string(5000, 'x')).c_str()), 0);
}

TEST_F(FileExists, FollowsLinks)
{
    make_file(directory.path("file"));
    ASSERT_EQ(symlink("file", directory.path("good").c_str()), 0);
    ASSERT_EQ(symlink("missing", directory.path("dangling").c_str()), 0);
    ASSERT_EQ(symlink("loop", directory.path("loop").c_str()), 0);
    EXPECT_EQ(file_exists(directory.path("good").c_str()), 1);
    EXPECT_EQ(file_exists(directory.path("dangling").c_str()), 0);
    EXPECT_EQ(file_exists(directory.path("loop").c_str()), 0);
}

TEST_F(FileExists, FindsFilesOfTwoGibibytesAndMore)
{
    const std::string file = make_file(directory.path("large"));
    for (const off_t size : {(static_cast<off_t>(2) << 30) - 1, static_cast<off_t>(2) << 30,
                             static_cast<off_t>(5) << 30}) {
        if (truncate(file.c_str(), size) != 0) {
            GTEST_SKIP() << "no room for a file with holes";
        }
        EXPECT_EQ(file_exists(file.c_str()), 1);
    }
}

TEST_F(RemovePath, DoesNothingForNullAndTheEmptyPath)
{
    EXPECT_EQ(remove_path(nullptr), 0);
    EXPECT_EQ(remove_path(""), 0);
}

TEST_F(RemovePath, RemovesAFile)
{
    const std::string file = make_file(directory.path("file"));
    EXPECT_EQ(remove_path(file.c_str()), 0);
    EXPECT_FALSE(is_there(file));
}

TEST_F(RemovePath, RemovesAFileThatMayNotBeWritten)
{
    const std::string file = make_file(directory.path("file"));
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    EXPECT_EQ(remove_path(file.c_str()), 0);
    EXPECT_FALSE(is_there(file));
}

TEST_F(RemovePath, RemovesAFileOfTwoGibibytesAndMore)
{
    const std::string file = make_file(directory.path("large"));
    if (truncate(file.c_str(), static_cast<off_t>(3) << 30) != 0) {
        GTEST_SKIP() << "no room for a file with holes";
    }
    EXPECT_EQ(remove_path(file.c_str()), 0);
    EXPECT_FALSE(is_there(file));
}

TEST_F(RemovePath, RemovesAFifo)
{
    const std::string fifo = directory.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(remove_path(fifo.c_str()), 0);
    EXPECT_FALSE(is_there(fifo));
}

TEST_F(RemovePath, RemovesAnEmptyDirectory)
{
    const std::string empty = directory.path("empty");
    ASSERT_EQ(mkdir(empty.c_str(), 0700), 0);
    EXPECT_EQ(remove_path(empty.c_str()), 0);
    EXPECT_FALSE(is_there(empty));
}

TEST_F(RemovePath, DoesNotEmptyADirectory)
{
    const std::string full = directory.path("full");
    ASSERT_EQ(mkdir(full.c_str(), 0700), 0);
    make_file(full + "/file");
    const int error = removal_error(full);
    EXPECT_TRUE(error == ENOTEMPTY || error == EEXIST) << error;
    EXPECT_TRUE(is_there(full + "/file"));
}

TEST_F(RemovePath, RemovesALinkAndNotItsTarget)
{
    const std::string file = make_file(directory.path("file"));
    const std::string inner = directory.path("inner");
    ASSERT_EQ(mkdir(inner.c_str(), 0700), 0);
    for (const char *const target : {"file", "inner", "missing"}) {
        SCOPED_TRACE(target);
        const std::string link = directory.path("link");
        ASSERT_EQ(symlink(target, link.c_str()), 0);
        EXPECT_EQ(remove_path(link.c_str()), 0);
        EXPECT_FALSE(is_there(link));
    }
    EXPECT_TRUE(is_there(file));
    EXPECT_TRUE(is_there(inner));
}

TEST_F(RemovePath, FailsWhereNothingIs)
{
    const std::string file = make_file(directory.path("file"));
    EXPECT_EQ(removal_error(directory.path("missing")), ENOENT);
    EXPECT_EQ(removal_error(file + "/x"), ENOTDIR);
    EXPECT_EQ(removal_error(directory.path(std::string(5000, 'x'))), ENAMETOOLONG);
}

TEST_F(RemovePath, ReportsNothing)
{
    make_file(directory.path("file"));
    const CapturedOutput output = capture_output([&] {
        remove_path(directory.path("missing").c_str());
        remove_path(directory.path().c_str());
        file_exists("/nonexistent/x");
    });
    EXPECT_EQ(output.out + output.err, "");
}

// Deliberate: a socket has the directory's bit in its mode, and is not removed.
TEST_F(RemovePath, FailsForASocket)
{
    const std::string path = directory.path("socket");
    if (!make_socket(path)) {
        GTEST_SKIP() << "no socket of that path: " << path;
    }
    EXPECT_EQ(removal_error(path), ENOTDIR);
    EXPECT_TRUE(is_there(path));
}

// Deliberate: so has a block device.
TEST_F(RemovePath, FailsForABlockDevice)
{
    const std::string path = directory.path("device");
    if (mknod(path.c_str(), S_IFBLK | 0600, makedev(7, 255)) != 0) {
        GTEST_SKIP() << "not allowed to make devices";
    }
    EXPECT_EQ(removal_error(path), ENOTDIR);
    EXPECT_TRUE(is_there(path));
}

TEST(PathBaseName, IsADotForNullAndTheEmptyPath)
{
    EXPECT_STREQ(path_base_name(nullptr), ".");
    EXPECT_STREQ(path_base_name(""), ".");
}

TEST(PathBaseName, PointsIntoThePath)
{
    struct Case {
        const char *path;
        std::ptrdiff_t offset;
    };
    for (const Case &c :
         {Case{"/", 0}, Case{"name", 0}, Case{"/usr/lib", 5}, Case{"dir/", 4}, Case{"a/b/", 4},
          Case{"//", 2}, Case{"///", 3}, Case{"/a", 1}, Case{"a/b", 2}, Case{".", 0}, Case{"..", 0},
          Case{"a//b", 3}, Case{"./x", 2}, Case{" ", 0}, Case{"a\\b", 0}, Case{"/\xff", 1}}) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(path_base_name(c.path) - c.path, c.offset);
    }
}

} // namespace
