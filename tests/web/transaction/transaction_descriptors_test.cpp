/// \file
/// Transactions in a process that has many descriptors open. Built twice: with the library as it
/// is, and with _FORTIFY_SOURCE, where a write behind a descriptor set ends the process.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/harness/capture.h"
#include "tests/harness/scripted_server.h"
#include "tests/web/web_call.h"

namespace {

/// Runs \p action in a child that may have \p limit descriptors; exit status 77 when it may not.
ChildResult with_descriptor_limit(rlim_t limit, const std::function<void()> &action)
{
    return run_in_child([&] {
        rlimit limits;
        getrlimit(RLIMIT_NOFILE, &limits);
        limits.rlim_cur = limit;
        if (setrlimit(RLIMIT_NOFILE, &limits) != 0) {
            _exit(77);
        }
        action();
    });
}

/// Opens descriptors until \p count are open or no more are to be had.
void open_descriptors(int count)
{
    while (true) {
        const int descriptor = open("/dev/null", O_RDONLY);
        if (descriptor < 0 || descriptor >= count - 1) {
            return;
        }
    }
}

/// Runs a transaction and writes its error text; exit status 1 when its result is not -1.
void write_failure(std::uint16_t port)
{
    WebCall call;
    call.port = port;
    const WebOutcome outcome = run(call);
    std::fputs(outcome.error.c_str(), stdout);
    if (outcome.result != -1) {
        std::fflush(stdout);
        _exit(1);
    }
}

} // namespace

TEST(WebDescriptors, TakesTheFirstOneWhereItIsFree)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    const ChildResult child = run_in_child([&] {
        close(STDIN_FILENO);
        WebCall call;
        call.port = server.port();
        std::fputs(run(call).body.value_or("(none)").c_str(), stdout);
    });
    EXPECT_EQ(child.out, "abc");
}

TEST(WebDescriptors, SaysThatThereIsNoDescriptorLeft)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    const ChildResult child = with_descriptor_limit(64, [&] {
        open_descriptors(64);
        write_failure(server.port());
    });
    EXPECT_EQ(child.exit_status, 0);
    EXPECT_EQ(child.out, "Can't create web socket, " + code_text(EMFILE));
    EXPECT_EQ(server.connection_count(), 0u);
}

TEST(WebDescriptors, RefusesASocketBehindTheDescriptorsOfTheWait)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    for (const int count : {1024, 1100}) {
        const ChildResult child = with_descriptor_limit(1200, [&] {
            open_descriptors(count);
            write_failure(server.port());
        });
        if (child.exit_status == 77) {
            GTEST_SKIP() << "this system does not allow 1,200 descriptors";
        }
        EXPECT_EQ(child.signal, 0);
        EXPECT_EQ(child.exit_status, 0);
        EXPECT_EQ(child.out, "Can't create web socket, " + code_text(EMFILE));
    }
    EXPECT_EQ(server.connection_count(), 0u);
}

TEST(WebDescriptors, LeavesNoDescriptorOpenWhereASocketIsRefused)
{
    const ChildResult child = with_descriptor_limit(1200, [&] {
        open_descriptors(1100);
        const std::size_t before = open_descriptor_count();
        write_failure(9);
        if (open_descriptor_count() != before) {
            _exit(1);
        }
    });
    if (child.exit_status == 77) {
        GTEST_SKIP() << "this system does not allow 1,200 descriptors";
    }
    EXPECT_EQ(child.exit_status, 0);
}

TEST(WebDescriptors, TakesTheLastDescriptorOfTheWait)
{
    ScriptedServer server({collect_request(), send_bytes("A\n\nabc")});
    const ChildResult child = with_descriptor_limit(1200, [&] {
        open_descriptors(1023); // 0 to 1022
        WebCall call;
        call.port = server.port();
        std::fputs(run(call).body.value_or("(none)").c_str(), stdout);
    });
    if (child.exit_status == 77) {
        GTEST_SKIP() << "this system does not allow 1,200 descriptors";
    }
    EXPECT_EQ(child.out, "abc");
}
