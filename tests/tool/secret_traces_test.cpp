/// \file
/// What a password leaves in the program and its output: no eight bytes of it, however long it is
/// and however the exchange ends.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>
#include <unordered_set>

#include "tests/harness/temporary_directory.h"
#include "tests/harness/valgrind.h"
#include "tests/tool/full_pipe.h"
#include "tests/tool/process_facts.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

constexpr std::size_t piece_size = 8;
constexpr std::size_t kept_size = 255;
/// The pieces of one whole copy of what is kept.
constexpr std::size_t pieces_of_a_copy = kept_size - piece_size + 1;

/// A signal saves the processor's registers, with what of a text they hold, on the stack.
constexpr std::size_t pieces_in_registers = 128;

/// Letters and digits at random, so that no eight of them occur elsewhere.
std::string random_secret(std::size_t size)
{
    constexpr char characters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz012345";
    std::uint32_t state = 20260102;
    std::string text;
    while (text.size() < size) {
        state = state * 1664525 + 1013904223;
        text += characters[(state >> 16) % (sizeof characters - 1)];
    }
    return text;
}

/// How many times any eight bytes of \p secret occur in \p bytes.
std::size_t pieces_in(const std::string &bytes, const std::string &secret)
{
    const auto piece_at = [](const std::string &text, std::size_t at) {
        std::uint64_t piece = 0;
        std::memcpy(&piece, text.data() + at, piece_size);
        return piece;
    };
    std::unordered_set<std::uint64_t> pieces;
    for (std::size_t at = 0; at + piece_size <= secret.size(); ++at) {
        pieces.insert(piece_at(secret, at));
    }
    std::size_t count = 0;
    for (std::size_t at = 0; at + piece_size <= bytes.size(); ++at) {
        count += pieces.count(piece_at(bytes, at));
    }
    return count;
}

Arguments operator+(Arguments arguments, const Arguments &more)
{
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

/// The program with all its symbols resolved at the start: resolving one at its first call saves
/// the processor's registers, with what of a text they hold, on the stack.
Arguments bound_command(const Arguments &arguments)
{
    return Arguments{"/usr/bin/env", "LD_BIND_NOW=1"} + corvella_command(arguments);
}

#ifdef __linux__
class SecretTraces : public testing::Test {
protected:
    void SetUp() override
    {
        if (runs_under_valgrind()) {
            GTEST_SKIP() << "the command line and the memory are valgrind's own";
        }
    }

    /// Runs the program until it has sent its request; the one copy of the secret is the settings'.
    static void expect_one_copy(const Arguments &arguments, const std::string &secret,
                                const ProgramOptions &options = {})
    {
        Milestone asked;
        ScriptedServer server(
            {collect_form(), asked.step(), stay_silent(), send_bytes(good_reply("body"))});
        RunningProgram program(bound_command(arguments + Arguments{"-proxy", proxy_of(server)}),
                               options);
        ASSERT_TRUE(asked.wait());
        let_it_wait(program);
        const pid_t pid = program.process().pid();
        EXPECT_EQ(pieces_in(file_of_process(pid, "cmdline"), secret), 0U) << arguments[0];
        EXPECT_EQ(pieces_in(file_of_process(pid, "environ"), secret), 0U) << arguments[0];
        const std::size_t pieces = pieces_in(writable_memory(pid), secret);
        EXPECT_GE(pieces, pieces_of_a_copy) << arguments.back();
        EXPECT_LE(pieces, pieces_of_a_copy + pieces_in_registers) << arguments.back();
        server.release();
        const ProgramResult result = program.finish();
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_EQ(pieces_in(result.out + result.err, secret), 0U);
    }

    /// Runs the program until it cannot report its failure; no copy is left then.
    static void expect_no_copy_after_failure(const Arguments &arguments, const std::string &secret,
                                             std::size_t most_pieces = 0)
    {
        const FullPipe err;
        ProgramOptions options;
        options.err = err.writing_end();
        RunningProgram program(bound_command(arguments), options);
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        let_it_wait(program);
        const pid_t pid = program.process().pid();
        EXPECT_EQ(pieces_in(file_of_process(pid, "cmdline"), secret), 0U) << arguments[1];
        EXPECT_LE(pieces_in(writable_memory(pid), secret), most_pieces) << arguments[1];
        program.process().signal(SIGKILL);
        EXPECT_EQ(program.finish().out, "");
    }

    const std::string page_ = "http://web1.test/";
    const std::string kept_ = random_secret(kept_size);
    const std::string longer_ = random_secret(3000);
};

TEST_F(SecretTraces, AreOneCopyDuringTheExchange)
{
    const Arguments get = {"get", page_};
    expect_one_copy(get + Arguments{"-user", "u", "-pass", kept_}, kept_);
    expect_one_copy(get + Arguments{"-user", "u", "-pass=" + kept_}, kept_);
    expect_one_copy(get + Arguments{"-proxy-user", "u", "-proxy-pass", longer_}, longer_);
    expect_one_copy(get + Arguments{"-proxy-user", "u", "--proxy-p=" + longer_}, longer_);
    expect_one_copy(get + Arguments{"-proxy-user", "u", "+proxy-pass", longer_, "-proxy-pass",
                                    kept_, "-proxy-pass", longer_},
                    longer_);
}

TEST_F(SecretTraces, AreOneCopyAfterTheRequestWasShown)
{
    const TemporaryDirectory directory;
    const std::string data = directory.write("data", "a body without the password");
    const Arguments login = {"-verbose", "-user", "u", "-pass", kept_};
    expect_one_copy(Arguments{"get", page_} + login, kept_);
    expect_one_copy(Arguments{"post", page_, "a=b"} + login, kept_);
    expect_one_copy(Arguments{"post", page_, "-data", data} + login, kept_);
    expect_one_copy(Arguments{"post", page_, "-automated", "-data", data} + login, kept_);
}

TEST_F(SecretTraces, AreOneCopyOfAPasswordThatWasRead)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("input", kept_ + "\n");
    ProgramOptions options;
    options.prepare = [&path] { dup2(open(path.c_str(), O_RDONLY), STDIN_FILENO); };
    expect_one_copy({"get", page_, "-user", "u"}, kept_, options);
    expect_one_copy({"get", page_, "-proxy-user", "u", "-proxy-pass", "-"}, kept_, options);
}

TEST_F(SecretTraces, AreGoneAfterAFailedExchange)
{
    const RefusingPort nobody;
    const std::string dead = "127.0.0.1:" + std::to_string(nobody.port());
    ScriptedServer refuses(replying("HTTP/1.0 401 Unauthorized\r\n\r\n"));
    ScriptedServer resets(
        {collect_request(), send_bytes(good_reply("half")), pause_for(100), reset_connection()});
    const ScriptedServer silent({collect_request(), stay_silent()});
    for (const Arguments &login : {Arguments{"-user", "u", "-pass", kept_},
                                   Arguments{"-proxy-user", "u", "-proxy-pass", longer_}}) {
        for (const std::string &proxy : {dead, proxy_of(refuses), proxy_of(resets)}) {
            expect_no_copy_after_failure(Arguments{"get", page_, "-proxy", proxy} + login, longer_,
                                         pieces_in_registers);
        }
        expect_no_copy_after_failure(Arguments{"get", "ftp://web1.test/", "-proxy", dead} + login,
                                     longer_);
        expect_no_copy_after_failure(
            Arguments{"get", page_, "-quiet", "-max-time", "0.3", "-proxy", proxy_of(silent)} +
                login,
            longer_, pieces_in_registers);
    }
}

// A line too long is not kept either.
TEST_F(SecretTraces, AreGoneAfterAPasswordThatIsRefused)
{
    const TemporaryDirectory directory;
    const FullPipe err;
    const std::string path = directory.write("input", random_secret(400) + "\n");
    ProgramOptions options;
    options.err = err.writing_end();
    options.prepare = [&path] { dup2(open(path.c_str(), O_RDONLY), STDIN_FILENO); };
    RunningProgram program(bound_command({"get", page_, "-user", "u"}), options);
    let_it_wait(program);
    EXPECT_EQ(pieces_in(writable_memory(program.process().pid()), longer_), 0U);
    program.process().signal(SIGKILL);
    EXPECT_EQ(program.finish().out, "");
}
#endif

TEST(SecretOutput, HasNoPieceOfAPassword)
{
    const RefusingPort nobody;
    const std::string dead = "http://127.0.0.1:" + std::to_string(nobody.port()) + "/";
    const std::string secret = random_secret(3000);
    const Arguments commands[] = {
        {"get", dead},
        {"get", dead, "-verbose"},
        {"get", dead, "-automated"},
        {"post", dead, "a=b", "-verbose", "-automated"},
        {"update", "-product", "P", "-productline", "L", "-version", "1x"},
        {"describe"},
        {"describe", "-automated"},
        {"fetch"},
        {"get", "-p"},
        {"get", "-bogus=" + secret},
        {"get", "-quiet=" + secret},
        {"get", "http://u:" + secret + "@web1.test/"},
        {"-help"},
        {"-version"},
    };
    for (const Arguments &command : commands) {
        for (const Arguments &login :
             {Arguments{"-user", "u", "-pass", secret.substr(0, 255)},
              Arguments{"-user", "u", "-pass", secret}, Arguments{"-pass=" + secret},
              Arguments{"-proxy-user", "u", "-proxy-pass", secret},
              Arguments{"-proxy", "h", "-proxy-pass", secret}}) {
            const ProgramResult result = run_corvella(command + login);
            EXPECT_EQ(pieces_in(result.out + result.err, secret), 0U)
                << command[0] << " " << command.back().substr(0, 20) << result.out << result.err;
        }
    }
}

} // namespace
