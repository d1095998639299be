/// \file
/// A transaction's arguments and its outcome as values, for the tests of the web client.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The arguments of web_transaction(), with those that most tests do not care about.
struct WebCall {
    const char *scheme = "HTTP";
    const char *host = "127.0.0.1";
    const char *target = "/";
    std::uint16_t port = 80;
    const char *method = "GET";
    const char *extra_headers = "";
    std::string_view body = {};
    const char *proxy_host = nullptr;
    std::uint16_t proxy_port = 0;
    const char *user = nullptr;
    const char *password = nullptr;
};

/// What a transaction gave; a text that it did not set is absent.
struct WebOutcome {
    int result;
    std::optional<std::string> header;
    std::optional<std::string> body;
    std::string error; ///< web_last_error() right after it
};

/// Runs the transaction and releases its texts. What web_last_error() said before stays.
WebOutcome run(const WebCall &call);

/// Runs a form request; \p call gives method, proxy and credentials. The form is "q=1".
WebOutcome run_request(const char *url, const WebCall &call = {});

/// The request that a transaction is to send, byte for byte. \p extra and \p authorization are
/// whole lines with their line ends, or empty.
std::string request_text(const std::string &first_line, const std::string &host,
                         const std::string &extra = "", const std::string &authorization = "",
                         const std::string &body = "");

/// The request's line with the maker's domain, with its line end.
std::string referer_line();

/// "code N: description" of a system error number.
std::string code_text(int error_number);

/// How many descriptors this process has open.
std::size_t open_descriptor_count();
