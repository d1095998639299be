/// \file
/// The system's network and clock replaced by a script: in a program with this file, the library's
/// calls of gethostbyname, socket, connect, send, ioctl, shutdown, select, recv and gettimeofday
/// come here. Time passes only within select, and sends and receives that fail, so that a time-out
/// of ten seconds takes none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <string>
#include <vector>

/// What happens next on the connection, as the client sees it.
struct NetworkEvent {
    enum Kind { Data, Silence, Close, ReceiveError, SelectError, WrongReadiness, ClockStep };
    Kind kind;
    std::string bytes = {};
    std::int64_t number = 0;
    std::size_t taken = 0; ///< of the bytes
};

/// Bytes that are there at once; recv gives them in one piece if they fit, and never more.
NetworkEvent data(std::string bytes);
NetworkEvent silence(std::int64_t milliseconds);
NetworkEvent peer_closes();
/// The next recv fails with this error number.
NetworkEvent receive_error(int error_number);
/// The next select fails with this error number.
NetworkEvent select_error(int error_number);
/// The next select reports that one descriptor is ready, which is not the socket.
NetworkEvent wrong_readiness();
/// Somebody sets the clock.
NetworkEvent clock_step(std::int64_t milliseconds);

/// The replaced network. A test sets the first half and looks at the second. When the events have
/// run out, the peer stays silent for ever.
struct FakeNetwork {
    std::deque<NetworkEvent> events;
    std::vector<const char *> addresses = {"127.0.0.1"}; ///< of every name
    int lookup_error = 0;                                ///< an h_errno, or 0
    int socket_error = 0;
    int connect_error = 0;
    int send_error = 0;           ///< of every send
    int send_error_ms = 1000;     ///< that every failing send takes
    int send_interruptions = 0;   ///< that precede each send that works
    int send_interruption_ms = 0; ///< that each of them takes
    std::size_t send_at_most = SIZE_MAX;
    std::size_t lost_send = SIZE_MAX;      ///< the number of the one send that fails with ENOBUFS
    std::size_t send_buffer = SIZE_MAX;    ///< bytes that the system holds for the peer
    std::int64_t taken_per_ms = -1;        ///< bytes that the peer takes of them; -1: all at once
    std::int64_t takes_for_ms = INT64_MAX; ///< after which it takes nothing any more
    bool tells_unsent = true;              ///< whether the system reports what it holds
    std::size_t receive_at_most = SIZE_MAX;
    int receive_error_ms = 0;  ///< that every failing recv takes
    bool keeps_records = true; ///< of each send, wait and receive; too many of them take too much
    std::int64_t clock_ms = 0; ///< since 1970

    std::vector<std::string> lookups;
    std::vector<std::vector<int>> sockets; ///< family, type and protocol of each
    std::vector<sockaddr_in> connects;
    std::string sent; ///< all that the peer has been given
    struct Send {
        std::string bytes; ///< that were offered, not all of which may have been taken
        int flags;
    };
    std::vector<Send> sends; ///< each, but for those of nothing
    int unsent_queries = 0;  ///< calls that asked what the system holds
    struct Shutdown {
        int how;
        std::size_t sends_before;
    };
    std::vector<Shutdown> shutdowns;
    struct Wait {
        int width;
        std::int64_t microseconds;
        std::int64_t at_ms; ///< when it began
    };
    std::vector<Wait> waits;
    std::vector<std::size_t> receives;  ///< the room of each recv
    int receive_flags = 0;              ///< those of every recv together
    bool received_without_data = false; ///< recv was called where it would have blocked
};

extern FakeNetwork network;

/// A fresh network for each test, whose millisecond counter is far from any wrap; no callback,
/// no cancel request, the last error text "earlier". At the end no descriptor may be left open, and
/// no recv may have had a flag.
class FakeNetworkTest : public testing::Test {
protected:
    FakeNetworkTest();
    ~FakeNetworkTest() override;

    /// Sets the clock so that the wrapping millisecond counter reads \p value.
    static void set_counter(std::uint32_t value);
    /// How much time has passed since the test began (or since set_counter).
    static std::int64_t elapsed_ms();

private:
    std::size_t descriptors_;
};
