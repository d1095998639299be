/// \file
/// The example programs, run as their readers would.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/harness/child_process.h"
#include "tests/harness/program.h"
#include "tests/harness/real_servers.h"
#include "tests/harness/scripted_server.h"
#include "tests/harness/temporary_directory.h"

namespace {

std::string example(const std::string &name)
{
    return CORVELLA_EXAMPLES "/" + name;
}

/// The stand-in of the service that needs no PHP, on a free port.
class OwnService {
public:
    OwnService()
    {
        ChildCommand command{{CORVELLA_EXAMPLES "/service/service"}};
        command.out = fileno(words_);
        process_ = std::make_unique<ChildProcess>(command);
        for (int tries = 0; port_ == 0 && tries < 1000; ++tries) {
            std::rewind(words_);
            if (std::fscanf(words_, "port %d\n", &port_) != 1) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        }
    }
    ~OwnService()
    {
        process_->signal(SIGKILL);
        process_.reset();
        std::fclose(words_);
    }
    OwnService(const OwnService &) = delete;
    OwnService &operator=(const OwnService &) = delete;

    std::string address() const
    {
        return "127.0.0.1:" + std::to_string(port_);
    }

private:
    std::FILE *words_ = std::tmpfile();
    int port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

std::string url_of(const ScriptedServer &server)
{
    return "http://127.0.0.1:" + std::to_string(server.port()) + "/";
}

} // namespace

TEST(Example, GetsAPage)
{
    ScriptedServer server({collect_request(), send_bytes("HTTP/1.0 200 OK\r\n\r\nHello\n")});
    const ProgramResult result = run_program({example("get_page"), url_of(server)});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "Hello\n");
    EXPECT_EQ(result.err, "");
}

TEST(Example, SaysWhyItGetsNoPage)
{
    ScriptedServer server({collect_request(), send_bytes("HTTP/1.0 404 Gone away\r\n\r\nno")});
    const ProgramResult result = run_program({example("get_page"), url_of(server)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Error: Bad HTTP status 404 from web site: Gone away\n"
                          "Error: Bad HTTP status 404 from web site: Gone away\a\n");
}

TEST(Example, PostsAForm)
{
    const PhpServer service;
    const ProgramResult result = run_program({example("post_form"), service.url("/form")});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "POST /form\nproduct=A B\nv=1.0\n");
}

TEST(Example, IsCancelledByASignal)
{
    std::promise<void> asked;
    const ScriptStep tell = [&asked](ScriptedConnection &) {
        asked.set_value();
        return true;
    };
    ScriptedServer server({collect_request(), tell, stay_silent()});
    RunningProgram program({example("cancel_with_signal"), url_of(server)});
    ASSERT_EQ(asked.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
    program.process().signal(SIGINT);
    const ProgramResult result = program.finish(10);
    EXPECT_EQ(result.exit_status, 130);
    EXPECT_NE(result.err.find("Note: User canceled web transaction\n"), std::string::npos);
}

TEST(Example, CollectsMessages)
{
    const ProgramResult result = run_program({example("message_hooks")});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "2 messages:\n..Info: 3 files read\n..Warning: notes.txt is empty\a\n");
    EXPECT_EQ(result.err, "");
}

TEST(Example, ReadsOptions)
{
    const ProgramResult result = run_program(
        {example("options_loop"), "first", "-v", "-o", "file", "--level=2", "-5", "last"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "verbose\noutput to file\nlevel 2\n"
                          "operand first\noperand -5\noperand last\n");
}

TEST(Example, RefusesAnOptionWithoutItsArgument)
{
    for (const std::string option : {"--level", "--level=", "--output", "-l", "-o"}) {
        const ProgramResult result = run_program({example("options_loop"), option});
        EXPECT_EQ(result.exit_status, 2) << option;
        EXPECT_EQ(result.out, "") << option;
        EXPECT_NE(result.err.find("argument required for option"), std::string::npos) << option;
    }
}

TEST(Example, WalksADirectory)
{
    const TemporaryDirectory directory;
    directory.write("a", "");
    const ProgramResult result = run_program({example("directory_walk"), directory.path()});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "a\n1 files\n");
}

TEST(Example, AsksForAnUpdate)
{
    const PhpServer service;
    const ProgramResult result =
        run_program({example("update_query"), "127.0.0.1:" + std::to_string(service.port())});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "Newest version: 5.2\nExample 5.2 is available; you have 5.1.\n");
}

TEST(Example, ServiceAnswersAFormAsPhpDoes)
{
    const OwnService service;
    const ProgramResult result =
        run_program({example("post_form"), "http://" + service.address() + "/form?query"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "POST /form\nproduct=A B\nv=1.0\n");
}

TEST(Example, ServiceAnswersAnUpdateAsPhpDoes)
{
    const OwnService service;
    const ProgramResult result = run_program({example("update_query"), service.address()});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "Newest version: 5.2\nExample 5.2 is available; you have 5.1.\n");
}
