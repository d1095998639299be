#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using Names = std::vector<std::string>;

TEST(OutputOption, WritesTheBodyToTheFileInsteadOfStandardOutput)
{
    const TemporaryDirectory directory;
    std::string body = "line\r\nno end of line at the end: \xff\x01";
    body += std::string(300'000, '-');
    const ProgramResult result = get_into(directory.path("page"), body);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(directory.read("page") == body);
    EXPECT_EQ(directory.names(), Names{"page"});
}

TEST(OutputOption, WritesAnEmptyBodyAsAnEmptyFile)
{
    const TemporaryDirectory directory;
    EXPECT_EQ(get_into(directory.path("page"), "").exit_status, 0);
    EXPECT_EQ(directory.read("page"), "");
}

TEST(OutputOption, WorksForAPostToo)
{
    const TemporaryDirectory directory;
    ScriptedServer server(replying(good_reply("thanks")));
    const ProgramResult result =
        run_corvella({"post", url_of(server), "a=b", "-output", directory.path("page")});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(directory.read("page"), "thanks");
}

TEST(OutputOption, ARelativePathIsTakenFromTheCurrentDirectory)
{
    const TemporaryDirectory directory;
    ProgramOptions options;
    options.directory = directory.path();
    EXPECT_EQ(get_into("page", "here", options).exit_status, 0);
    EXPECT_EQ(directory.read("page"), "here");
}

TEST(OutputOption, TheHeaderStaysOnStandardOutput)
{
    const TemporaryDirectory directory;
    ScriptedServer server(replying("HTTP/1.0 200 OK\r\nX-Line: 1\r\n\r\nbody"));
    const ProgramResult result =
        run_corvella({"get", "-header", url_of(server), "-output", directory.path("page")});
    EXPECT_EQ(result.out, "HTTP/1.0 200 OK\r\nX-Line: 1\r\n\r\n");
    EXPECT_EQ(directory.read("page"), "body");
}

TEST(OutputOption, ReplacesAFileWhole)
{
    const TemporaryDirectory directory;
    directory.write("page", std::string(1000, 'x'));
    EXPECT_EQ(get_into(directory.path("page"), "new").exit_status, 0);
    EXPECT_EQ(directory.read("page"), "new");
    EXPECT_EQ(directory.names(), Names{"page"});
}

TEST(OutputOption, LeavesEveryOtherFileAlone)
{
    const TemporaryDirectory directory;
    const Names others = {"page.part", "page.tmp", "page~"};
    for (const std::string &name : others) {
        directory.write(name, "mine");
    }
    EXPECT_EQ(get_into(directory.path("page"), "body").exit_status, 0);
    EXPECT_EQ(directory.read("page"), "body");
    for (const std::string &name : others) {
        EXPECT_EQ(directory.read(name), "mine");
    }
}

TEST(OutputOption, AMissingDirectoryIsAFailureThatNamesTheFile)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("missing/page");
    const ProgramResult result = get_into(path, "body");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, path)) << result.err;
    EXPECT_TRUE(contains(result.err, "No such file or directory")) << result.err;
    EXPECT_EQ(directory.names(), Names{});
}

TEST(OutputOption, ADirectoryIsNotAFileToWriteTo)
{
    const TemporaryDirectory directory;
    mkdir(directory.path("folder").c_str(), 0700);
    const ProgramResult result = get_into(directory.path("folder"), "body");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, directory.path("folder"))) << result.err;
    EXPECT_EQ(directory.names(), Names{"folder"});
}

TEST(OutputOption, AnEmptyNameIsRefused)
{
    const ProgramResult result = get_into("", "body");
    EXPECT_NE(result.exit_status, 0);
    EXPECT_NE(result.err, "");
    EXPECT_EQ(result.out, "");
}

TEST(OutputOption, IsCheckedBeforeTheRequest)
{
    const TemporaryDirectory directory;
    mkdir(directory.path("folder").c_str(), 0700);
    directory.write("file", "");
    EXPECT_EQ(symlink("missing/page", directory.path("link").c_str()), 0);
    const struct {
        std::string path;
        std::string reason;
    } cases[] = {
        {directory.path("missing/page"), "No such file or directory"},
        {directory.path("link"), "No such file or directory"},
        {directory.path("new/"), "No such file or directory"},
        {directory.path("folder"), "Is a directory"},
        {directory.path("file/page"), "Not a directory"},
    };
    ScriptedServer server(replying(good_reply("body")));
    for (const auto &[path, reason] : cases) {
        const ProgramResult result = run_corvella({"get", url_of(server), "-output", path});
        EXPECT_EQ(result.exit_status, 1) << path;
        EXPECT_EQ(result.err, error_text("Write of " + path + " failed: " + reason));
    }
    EXPECT_EQ(server.connection_count(), 0U);
}

TEST(OutputOption, ADashIsStandardOutput)
{
    const TemporaryDirectory directory;
    ProgramOptions options;
    options.directory = directory.path();
    ScriptedServer server(replying(good_reply("body")));
    EXPECT_EQ(run_corvella({"get", url_of(server), "-output", "-"}, options).out, "body");
    EXPECT_EQ(run_corvella({"get", url_of(server), "-output=-"}, options).out, "body");
    EXPECT_EQ(directory.names(), Names{});
}

TEST(OutputOption, TheLastOneCounts)
{
    const TemporaryDirectory directory;
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_corvella({"get", url_of(server), "-output", directory.path("first"), "-output",
                      directory.path("second")});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(directory.names(), Names{"second"});
}

/// Standard output in a file that says something already, with this flag beside the usual ones.
class RedirectedOutput {
public:
    explicit RedirectedOutput(int flag)
        : descriptor_(open(directory_.write("log", "earlier\n").c_str(), O_WRONLY | flag))
    {
        EXPECT_GE(descriptor_, 0);
        lseek(descriptor_, 0, SEEK_END);
    }
    RedirectedOutput(const RedirectedOutput &) = delete;
    RedirectedOutput &operator=(const RedirectedOutput &) = delete;
    ~RedirectedOutput()
    {
        close(descriptor_);
    }
    ProgramOptions options() const
    {
        ProgramOptions options;
        options.out = descriptor_;
        return options;
    }
    void write_more() const
    {
        EXPECT_EQ(write(descriptor_, "later\n", 6), 6);
    }
    std::string text() const
    {
        return directory_.read("log");
    }
    std::string write_beside(const std::string &name, const std::string &text) const
    {
        return directory_.write(name, text);
    }
    std::string read_beside(const std::string &name) const
    {
        return directory_.read(name);
    }
    Names names() const
    {
        return directory_.names();
    }

private:
    TemporaryDirectory directory_;
    int descriptor_;
};

TEST(OutputOption, StandardOutputByItsNameKeepsWhatItsFileHolds)
{
    for (const int flag : {O_APPEND, 0}) {
        for (const char *const name : {"/dev/stdout", "/dev/fd/1"}) {
            const RedirectedOutput output(flag);
            EXPECT_EQ(get_into(name, "body\n", output.options()).exit_status, 0);
            output.write_more();
            EXPECT_EQ(output.text(), "earlier\nbody\nlater\n") << name << flag;
            EXPECT_EQ(output.names(), Names{"log"});
        }
    }
}

TEST(OutputOption, StandardOutputByItsNameTakesTheBodyBehindTheHeader)
{
    const RedirectedOutput output(O_APPEND);
    ScriptedServer server(replying("HTTP/1.0 200 OK\r\nX-Line: 1\r\n\r\nbody"));
    const ProgramResult result = run_corvella(
        {"get", url_of(server), "-header", "-output", "/dev/stdout"}, output.options());
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(output.text(), "earlier\nHTTP/1.0 200 OK\r\nX-Line: 1\r\n\r\nbody");
}

TEST(OutputOption, ANameMayBeAsLongAsTheSystemAllows)
{
    const TemporaryDirectory directory;
    const std::string name(255, 'n');
    for (const char *const body : {"made", "replaced"}) {
        const ProgramResult result = get_into(directory.path(name), body);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(directory.read(name), body);
        EXPECT_EQ(directory.names(), Names{name});
    }
}

// Whoever answered the request shall not get the rights of the file's owner.
TEST(OutputOption, TheRightToRunAsTheOwnerDoesNotPassToTheNewFile)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("page", "old");
    struct stat status = {};
    ASSERT_EQ(chmod(path.c_str(), 06751), 0);
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    ASSERT_NE(status.st_mode & S_ISUID, 0U);
    EXPECT_EQ(get_into(path, "new").exit_status, 0);
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0751U);
    EXPECT_EQ(directory.read("page"), "new");
}

void allow_small_files_only()
{
    const rlimit limit = {4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
}

// Two files of one file system; and no standard output at all.
TEST(OutputOption, AnExistingFileIsNotTakenForStandardOutput)
{
    const RedirectedOutput output(O_APPEND);
    EXPECT_EQ(get_into(output.write_beside("page", "old"), "new", output.options()).exit_status, 0);
    EXPECT_EQ(output.text(), "earlier\n");
    EXPECT_EQ(output.read_beside("page"), "new");
    ProgramOptions closed;
    closed.out = CLOSED;
    EXPECT_EQ(get_into(output.write_beside("page", "old"), "newer", closed).exit_status, 0);
    EXPECT_EQ(output.read_beside("page"), "newer");
}

TEST(OutputOption, ANewFileHasThePermissionsOfAnyNewFile)
{
    const struct {
        void (*set_mask)();
        mode_t permissions;
    } cases[] = {
        {[] { umask(0); }, 0666},
        {[] { umask(022); }, 0644},
        {[] { umask(077); }, 0600},
    };
    for (const auto &[set_mask, permissions] : cases) {
        const TemporaryDirectory directory;
        ProgramOptions options;
        options.prepare = set_mask;
        EXPECT_EQ(get_into(directory.path("page"), "new", options).exit_status, 0);
        struct stat status = {};
        ASSERT_EQ(stat(directory.path("page").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, permissions);
    }
}

TEST(OutputOption, AFullDiskLeavesNothingBehind)
{
    const TemporaryDirectory directory;
    ProgramOptions options;
    options.prepare = allow_small_files_only;
    const ProgramResult result =
        get_into(directory.path("page"), std::string(100'000, 'x'), options);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "File too large")) << result.err;
    EXPECT_EQ(directory.names(), Names{});
}

TEST(OutputOption, AFullDiskLeavesTheOldFile)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    ProgramOptions options;
    options.prepare = allow_small_files_only;
    // So little more than the limit that only the last write fails.
    for (const std::size_t size : {4097U, 100'000U}) {
        EXPECT_EQ(get_into(directory.path("page"), std::string(size, 'x'), options).exit_status, 1);
        EXPECT_EQ(directory.read("page"), "old");
        EXPECT_EQ(directory.names(), Names{"page"});
    }
}

TEST(OutputOption, AFailedRequestLeavesTheOldFile)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    const ServerScript failing[] = {
        replying("HTTP/1.0 404 Not Found\r\n\r\nan error page"),
        replying("no reply of the web\r\n\r\n"),
        {collect_request(), send_bytes(good_reply("half")), pause_for(300), reset_connection()},
    };
    for (const ServerScript &script : failing) {
        ScriptedServer server(script);
        const ProgramResult result =
            run_corvella({"get", url_of(server), "-output", directory.path("page")});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(directory.read("page"), "old");
        EXPECT_EQ(directory.names(), Names{"page"});
    }
}

} // namespace
