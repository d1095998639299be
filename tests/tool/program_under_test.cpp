#include "tests/tool/program_under_test.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace {

constexpr char empty_line[] = "\r\n\r\n";

std::size_t promised_length(const std::string &header)
{
    constexpr std::string_view name = "\r\nContent-Length: ";
    const std::size_t at = header.find(name);
    return at == std::string::npos ? 0 : std::strtoul(&header[at + name.size()], nullptr, 10);
}

} // namespace

ProgramResult run_corvella(const std::vector<std::string> &arguments, const ProgramOptions &options)
{
    return run_program(corvella_command(arguments), options);
}

std::vector<std::string> corvella_command(const std::vector<std::string> &arguments)
{
    std::vector<std::string> command = {corvella_path()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

std::string corvella_path()
{
    return CORVELLA_PROGRAM;
}

std::string corvella_version()
{
    return CORVELLA_PROGRAM_VERSION;
}

std::string update_url()
{
    return "http://www." CORVELLA_MAKER_DOMAIN "/version-update.php";
}

std::string error_text(const std::string &text)
{
    return "Error: " + text + "\nError: " + text + "\a\n";
}

std::string usage_error_text(const std::string &text)
{
    return error_text(text) + "Try 'corvella -help'.\n";
}

std::string url_of(const ScriptedServer &server, std::string_view path)
{
    return "http://" + proxy_of(server) + std::string(path);
}

std::string proxy_of(const ScriptedServer &server)
{
    return "127.0.0.1:" + std::to_string(server.port());
}

ScriptStep collect_form()
{
    return [](ScriptedConnection &connection) {
        return connection.collect_until([](const std::string &received) {
            const std::size_t end = received.find(empty_line);
            return end != std::string::npos &&
                   (received.rfind("POST ", 0) != 0 ||
                    received.size() >= end + 4 + promised_length(received.substr(0, end + 2)));
        });
    };
}

ScriptStep send_endlessly(const std::string &bytes)
{
    std::string many;
    while (many.size() < 10'000) {
        many += bytes;
    }
    return [many](ScriptedConnection &connection) {
        while (connection.send(many)) {
        }
        return false;
    };
}

ScriptStep Milestone::step()
{
    return [reached = reached_](ScriptedConnection &) { return *reached = true; };
}

bool Milestone::wait() const
{
    for (int waited = 0; waited < 30'000 && !*reached_; waited += 5) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return *reached_;
}

ServerScript replying(const std::string &reply)
{
    return {collect_form(), send_bytes(reply)};
}

std::string good_reply(const std::string &body)
{
    return "HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\n\r\n" + body;
}

ProgramResult get_into(const std::string &path, const std::string &body,
                       const ProgramOptions &options)
{
    ScriptedServer server(replying(good_reply(body)));
    return run_corvella({"get", url_of(server), "-output", path}, options);
}

std::string only_request(ScriptedServer &server)
{
    const std::vector<std::string> requests = server.requests();
    EXPECT_EQ(requests.size(), 1U);
    return requests.empty() ? "" : requests.front();
}

std::string body_of(const std::string &message)
{
    const std::size_t end = message.find(empty_line);
    return end == std::string::npos ? "(no empty line)" : message.substr(end + 4);
}

bool contains(std::string_view whole, std::string_view text)
{
    return whole.find(text) != std::string_view::npos;
}
