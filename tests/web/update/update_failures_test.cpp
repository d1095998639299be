// The update query, and what it and the transaction are made of, with every call failing in turn;
// see tests/failures.
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"
#include "tests/web/transaction/failing_exchange.h"
#include "tests/web/update/update_call.h"
#include "web/web.h"

namespace {

char message[32];
char version[32];

std::string shown_update(int update_result, const std::string &message_text,
                         const std::string &version_text, const std::string &error)
{
    return std::to_string(update_result) + "|" + message_text + "|" + version_text + "|" + error;
}

/// What the query makes of an exchange that worked.
std::string update_from(const Exchange &exchange)
{
    const std::string &status = *exchange.header;
    const std::size_t protocol = std::strlen("HTTP/");
    const std::size_t first_reason = std::strlen("HTTP/1.0 200 O");
    if (status.size() < protocol) {
        return shown_update(-1, "", "", "Invalid non-HTTP header string returned from web site");
    }
    if (status.size() < first_reason) {
        return shown_update(-1, "", "",
                            "Invalid HTTP return status (can't parse header HTTP/" +
                                status.substr(protocol) + ")");
    }
    const bool has_message = exchange.body == body || exchange.body->size() > body.size();
    // What is left of a header in front of the first name makes it another.
    const bool has_version = exchange.body == body || exchange.body == chunks[0];
    return shown_update(has_message ? 0 : -1, has_message ? "new" : "", has_version ? "2.0" : "",
                        exchange.error);
}

FailureScenario update()
{
    return {"QueryProductUpdate",
            {"query_product_update"},
            {Call::Realloc, Call::New, Call::Socket, Call::Lookup, Call::Connect, Call::SetOption,
             Call::Send, Call::Select, Call::Receive, Call::Close, Call::Clock, Call::Format},
            [] {
                prepare_exchange();
                message[0] = version[0] = '\0';
            },
            [] {
                running.result = query_product_update("p", "l", 1.0F, "n", "o", "v", "m", "a",
                                                      sizeof message, message, version, nullptr,
                                                      nullptr, nullptr, 0, nullptr, nullptr);
                running.finished = true;
            },
            [] {
                return running.finished
                           ? shown_update(running.result, message, version, web_last_error())
                           : "";
            },
            shown_update(0, "new", "2.0", ""),
            [](const Failure &failure) -> std::string {
                if (is_out_of_memory(failure)) {
                    return "std::bad_alloc ";
                }
                const Exchange exchange = exchange_with(failure, update_host());
                return exchange.result == 0 ? update_from(exchange)
                                            : shown_update(exchange.result, "", "", exchange.error);
            }};
}

const char *reply_header;

/// One of the three complaints of a reply's status.
FailureScenario bad_status(const char *name, void (*prepare)(), const std::string &complaint)
{
    return {name,
            {"check_reply_status"},
            {Call::Malloc, Call::Format},
            prepare,
            [] {
                running.finished = false;
                running.result = check_reply_status(reply_header);
                running.finished = true;
            },
            [] {
                return running.finished ? std::to_string(running.result) + "|" + web_last_error()
                                        : "";
            },
            "-1|" + complaint,
            [](const Failure &failure) -> std::string {
                const bool exhausted = failure.call == Call::Malloc || failure.error == EOVERFLOW;
                return exhausted ? "std::bad_alloc " : "-1|";
            }};
}

/// The complaint about a reply that is shorter than announced.
FailureScenario incomplete_reply()
{
    return {"IncompleteReply",
            {"check_reply_complete"},
            {Call::Malloc, Call::Format},
            [] { set_web_error("earlier"); },
            [] {
                running.finished = false;
                running.result =
                    check_reply_complete("HTTP/1.0 200 OK\r\nContent-Length: 1000\r\n\r", "abc");
                running.finished = true;
            },
            [] {
                return running.finished ? std::to_string(running.result) + "|" + web_last_error()
                                        : "";
            },
            "-1|Incomplete reply from web site: 3 of 1000 bytes",
            [](const Failure &failure) -> std::string {
                const bool exhausted = failure.call == Call::Malloc || failure.error == EOVERFLOW;
                return exhausted ? "std::bad_alloc " : "-1|";
            }};
}

/// Without memory the earlier text is kept.
FailureScenario error_text()
{
    return {"SetWebError",
            {"set_web_error"},
            {Call::Malloc, Call::Format},
            [] { set_web_error("earlier"); },
            [] { set_web_error("%s and later", web_last_error()); },
            [] { return std::string(web_last_error()); },
            "earlier and later",
            [](const Failure &failure) -> std::string {
                const bool exhausted = failure.call == Call::Malloc || failure.error == EOVERFLOW;
                return exhausted ? "std::bad_alloc earlier" : "";
            }};
}

FailureScenario system_error()
{
    return {"SystemErrorText",
            {"system_error_text"},
            {Call::Format},
            nullptr,
            [] {
                errno = ENOENT;
                system_error_text();
            },
            [] {
                errno = ENOENT;
                return std::string(system_error_text());
            },
            "code 2: No such file or directory",
            [](const Failure &) -> std::string { return "code 2: No such file or directory"; }};
}

std::string *form_header;
std::string *form_body;

/// The two texts are the caller's, and so is what they hold after an exception.
FailureScenario form()
{
    return {"BuildFormBody",
            {"build_form_body"},
            {Call::New},
            [] {
                form_header = new std::string;
                form_body = new std::string;
            },
            [] {
                const FormField field = {"name", "a long value that is not short"};
                build_form_body(1, &field, *form_header, *form_body);
            },
            [] {
                const bool complete =
                    *form_body == "name=a%20long%20value%20that%20is%20not%20short" &&
                    form_header->find("Content-Length: 47") != std::string::npos;
                delete form_header;
                delete form_body;
                return std::string(complete ? "a form" : "no form");
            },
            "a form",
            [](const Failure &) -> std::string { return "std::bad_alloc no form"; }};
}

} // namespace

std::vector<FailureScenario> update_scenarios()
{
    return {
        update(),
        bad_status(
            "BadStatus", [] { reply_header = "HTTP/1.0 404 Not Found\r\n\r"; },
            "Bad HTTP status 404 from web site: Not Found"),
        bad_status(
            "UnreadableStatus", [] { reply_header = "HTTP/1.0 OK\r\n\r"; },
            "Invalid HTTP return status (can't parse header HTTP/1.0 OK\r\n\r)"),
        bad_status(
            "NoStatus", [] { reply_header = "Server: none\r\n\r"; },
            "Invalid non-HTTP header string returned from web site"),
        incomplete_reply(),
        error_text(),
        system_error(),
        form(),
    };
}
