/// \file
/// The program corvella, run by a test with a web server of the test's own.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/harness/program.h"
#include "tests/harness/scripted_server.h"

/// Runs it with these arguments; the program's own path comes before them.
ProgramResult run_corvella(const std::vector<std::string> &arguments,
                           const ProgramOptions &options = {});
/// The whole command, for RunningProgram.
std::vector<std::string> corvella_command(const std::vector<std::string> &arguments);
/// Its path, which is what it calls itself in the diagnostics of its options.
std::string corvella_path();
std::string corvella_version();
/// Where the update query goes.
std::string update_url();

/// An error on standard error: from the print path, and from the message hook with a bell.
std::string error_text(const std::string &text);
/// All of standard error after a usage error.
std::string usage_error_text(const std::string &text);

/// The address of a page of \p server.
std::string url_of(const ScriptedServer &server, std::string_view path = "/page");
/// A server as the argument of -proxy.
std::string proxy_of(const ScriptedServer &server);
/// A step that receives a whole request, with its body if it has one.
ScriptStep collect_form();
/// A step that sends these bytes again and again until the client has gone.
ScriptStep send_endlessly(const std::string &bytes);
/// A place in a script that a test can wait for.
class Milestone {
public:
    ScriptStep step();
    /// \return whether a connection came to it within half a minute.
    bool wait() const;

private:
    std::shared_ptr<std::atomic<bool>> reached_ = std::make_shared<std::atomic<bool>>(false);
};

/// The script of a server that gives this reply to every request.
ServerScript replying(const std::string &reply);
/// A reply of status 200.
std::string good_reply(const std::string &body);
/// Runs the program so that it gets a page of this body into the file of -output.
ProgramResult get_into(const std::string &path, const std::string &body,
                       const ProgramOptions &options = {});
/// The one request that \p server received; stops it.
std::string only_request(ScriptedServer &server);
/// The part of a request or reply behind the empty line.
std::string body_of(const std::string &message);

/// Whether \p text occurs in \p whole.
bool contains(std::string_view whole, std::string_view text);
