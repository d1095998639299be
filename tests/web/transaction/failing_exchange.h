/// \file
/// What an exchange with a scripted server comes to when one call of the system fails in it, after
/// the words of web/transaction.h; and the exchange of a failure scenario that runs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"

// What the server sends, each piece there at once.
inline const std::string header_bytes = "HTTP/1.0 200 OK\r\n\r\n";
inline const std::string header = "HTTP/1.0 200 OK\r\n\r"; // its last line feed is no part of it
inline const std::vector<std::string> chunks = {"Version: 2.0\n", "Message: new"};
inline const std::string body = "Version: 2.0\nMessage: new";
inline const int header_reads = static_cast<int>(header_bytes.size());

inline const std::string timeout = "Timeout waiting for web site";

/// An exchange as its caller sees it, and as the server does.
struct Exchange {
    int result = 0;
    std::optional<std::string> header = {};
    std::optional<std::string> body = {};
    std::string error = {};
    bool request_is_whole = true;
};

std::string shown(const Exchange &exchange);

/// The exchange with \p host in which the call fails; unchanged by one that nothing depends on.
Exchange exchange_with(const Failure &failure, const std::string &host);
Exchange with_failed_send(const Failure &failure);
Exchange with_failed_receive(const Failure &failure);

/// Whether an errno says that a call was only interrupted.
bool was_interruption(int error);

/// Whether the last run met a failure that ends in std::bad_alloc: memory that a text cannot be cut
/// to is kept, any other that is missing ends the exchange.
bool is_out_of_memory(const Failure &failure);

/// The exchange of the scenario that runs.
struct RunningExchange {
    char *header = nullptr;
    char *body = nullptr;
    int result = 0;
    bool finished = false;     ///< no exception ended it
    std::string whole_request; ///< that the server is to receive
};
extern RunningExchange running;

/// Begins a new one, with the server's script from the start. A failed call takes a second.
void prepare_exchange(const std::string &whole_request = "");

/// What the outcome says behind the rest when a request to cancel is left.
constexpr char still_to_be_cancelled[] = "(still to be cancelled)";

/// What has come of it; "" after an exception. Gives its texts back.
std::string exchange_outcome();
