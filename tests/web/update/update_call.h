/// \file
/// The update query's arguments and its outcome as values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The arguments of query_product_update(), with those that most tests do not care about.
struct UpdateQuery {
    const char *product = "p";
    const char *productline = "l";
    float version = 1.0F;
    const char *version_name = "n";
    const char *os = "o";
    const char *os_version = "v";
    const char *machine_id = "m";
    const char *processor_arch = "a";
    int capacity = 64;
    bool wants_version = true; ///< else the destination is null, and so on
    bool wants_url = true;
    bool wants_button = true;
    const char *proxy_host = nullptr;
    std::uint16_t proxy_port = 0;
    const char *user = nullptr;
    const char *password = nullptr;
};

/// What the query gave; a text is absent when not a byte of its destination was written.
struct UpdateOutcome {
    int result;
    std::optional<std::string> message;
    std::optional<std::string> version;
    std::optional<std::string> url;
    std::optional<std::string> button;
    std::string error; ///< web_last_error() right after it
};

/// Asks. Each destination has exactly `capacity` bytes (but 8 when that is below 1); a
/// destination that was written must end in NUL from its text on, and nothing around it may change.
UpdateOutcome ask(const UpdateQuery &query);

/// The address that the query goes to, and its host as it appears in the request.
std::string update_url();
std::string update_host();

/// The whole request for the form \p body. \p authorization is a whole line, or empty.
std::string update_request(const std::string &body, const std::string &authorization = "");

/// The form of a default UpdateQuery, except for the version's text (escaped already).
std::string update_form(const std::string &version = "1%2e000");
