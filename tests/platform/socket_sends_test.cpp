/// \file
/// How Mac OS X's sockets are prepared and written to. The calls are recorded by wrappers that the
/// linker puts before them; what is behind is the replaced network of fake_network.cpp.
#include "web/socket_sends.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"

namespace {

using corvella::prepare_sends;
using corvella::prepare_socket;
using corvella::send_piece;
using corvella::unsent_bytes;

using Texts = std::vector<std::string>;

/// What every wrapped call leaves here: its name with what matters of its arguments.
Texts calls;
/// What getsockopt returns.
int unsent_result = 0;
/// The sockets that the calls were made on.
std::vector<int> sockets;

std::string number_text(const void *value, socklen_t size)
{
    int number = 0;
    if (size != sizeof number) {
        return "(of " + std::to_string(size) + " bytes)";
    }
    std::memcpy(&number, value, sizeof number);
    return std::to_string(number);
}

std::string time_text(const void *value, socklen_t size)
{
    timeval time = {};
    if (size != sizeof time) {
        return "(of " + std::to_string(size) + " bytes)";
    }
    std::memcpy(&time, value, sizeof time);
    return std::to_string(time.tv_sec) + " s " + std::to_string(time.tv_usec) + " us";
}

std::string option_text(int level, int option, const void *value, socklen_t size)
{
    if (level == SOL_SOCKET && option == SO_NOSIGPIPE) {
        return "SO_NOSIGPIPE " + number_text(value, size);
    }
    if (level == SOL_SOCKET && option == SO_SNDTIMEO) {
        return "SO_SNDTIMEO " + time_text(value, size);
    }
    if (level == IPPROTO_TCP && option == TCP_NOPUSH) {
        return "TCP_NOPUSH " + number_text(value, size);
    }
    return "option " + std::to_string(option) + " of level " + std::to_string(level);
}

/// The names of the calls, without their arguments.
Texts call_names()
{
    Texts names;
    for (const std::string &call : calls) {
        names.push_back(call.substr(0, call.find(' ')));
    }
    return names;
}

class SocketSends : public FakeNetworkTest {
protected:
    SocketSends()
    {
        calls.clear();
        sockets.clear();
        network.events = {data("HTTP/1.0 200 OK\r\n\r\nbody"), peer_closes()};
    }
};

} // namespace

#if defined(_TIME_BITS) // the names of the calls in 32-bit programs with times of 64 bits
#define __wrap_setsockopt __wrap___setsockopt64
#define __wrap_getsockopt __wrap___getsockopt64
#endif

extern "C" {

int __real_socket(int family, int type, int protocol);
int __wrap_socket(int family, int type, int protocol);
int __real_connect(int socket, const sockaddr *address, socklen_t size);
int __wrap_connect(int socket, const sockaddr *address, socklen_t size);
int __wrap_setsockopt(int socket, int level, int option, const void *value, socklen_t size);
int __wrap_getsockopt(int socket, int level, int option, void *value, socklen_t *size);
ssize_t __real_send(int socket, const void *bytes, size_t size, int flags);
ssize_t __wrap_send(int socket, const void *bytes, size_t size, int flags);

int __wrap_socket(int family, int type, int protocol)
{
    calls.push_back("socket");
    return __real_socket(family, type, protocol);
}

int __wrap_connect(int socket, const sockaddr *address, socklen_t size)
{
    calls.push_back("connect");
    sockets.push_back(socket);
    return __real_connect(socket, address, size);
}

int __wrap_setsockopt(int socket, int level, int option, const void *value, socklen_t size)
{
    calls.push_back(option_text(level, option, value, size));
    sockets.push_back(socket);
    errno = EINVAL; // as after a failure, which is none of the sends' business
    return -1;
}

int __wrap_getsockopt(int socket, int level, int option, void *value, socklen_t *size)
{
    const bool known = level == SOL_SOCKET && option == SO_NWRITE && *size == sizeof(int);
    calls.push_back(known ? "SO_NWRITE" : "option " + std::to_string(option));
    sockets.push_back(socket);
    const int unsent = 12345;
    std::memcpy(value, &unsent, sizeof unsent);
    return unsent_result;
}

ssize_t __wrap_send(int socket, const void *bytes, size_t size, int flags)
{
    const std::string text(static_cast<const char *>(bytes), size);
    calls.push_back("send with flags " + std::to_string(flags) + ": " + text);
    sockets.push_back(socket);
    return __real_send(socket, bytes, size, flags);
}
}

TEST_F(SocketSends, ANewSocketIsToRaiseNoSignal)
{
    prepare_socket(17);
    EXPECT_EQ(calls, Texts{"SO_NOSIGPIPE 1"});
    EXPECT_EQ(sockets, std::vector<int>{17});
}

TEST_F(SocketSends, AConnectedSocketGathersPieces)
{
    prepare_sends(17);
    EXPECT_EQ(calls, Texts{"TCP_NOPUSH 1"});
    EXPECT_EQ(sockets, std::vector<int>{17});
}

TEST_F(SocketSends, ATransactionHasEachSendWaitFor100MillisecondsAtMost)
{
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "SO_SNDTIMEO 0 s 100000 us"), 1);
}

TEST_F(SocketSends, APieceWithOthersBehindItIsOneSendWithoutFlags)
{
    EXPECT_EQ(send_piece(17, "piece", 3, true), 3);
    EXPECT_EQ(calls, Texts{"send with flags 0: pie"});
    EXPECT_EQ(sockets, std::vector<int>{17});
}

TEST_F(SocketSends, NothingIsHeldBackAnyMoreWhenTheLastPieceIsSent)
{
    EXPECT_EQ(send_piece(17, "piece", 5, false), 5);
    EXPECT_EQ(calls, (Texts{"TCP_NOPUSH 0", "send with flags 0: piece"}));
    EXPECT_EQ(sockets, (std::vector<int>{17, 17}));
}

TEST_F(SocketSends, APieceIsSentAsItIsWithItsNulBytes)
{
    const std::string piece("a\0b", 3);
    EXPECT_EQ(send_piece(17, piece.data(), piece.size(), true), 3);
    EXPECT_EQ(calls, Texts{"send with flags 0: " + piece});
}

TEST_F(SocketSends, ALargePieceIsSentInSmallOnesAndHeldBackUntilTheLast)
{
    const std::string piece(8193, 'x');
    EXPECT_EQ(send_piece(17, piece.data(), 8193, false), 8192);
    EXPECT_EQ(calls, Texts{"send with flags 0: " + piece.substr(1)});
    calls.clear();
    EXPECT_EQ(send_piece(17, piece.data(), 8192, false), 8192);
    EXPECT_EQ(calls, (Texts{"TCP_NOPUSH 0", "send with flags 0: " + piece.substr(1)}));
}

TEST_F(SocketSends, ReportTheUnsentBytes)
{
    unsent_result = 0;
    EXPECT_EQ(unsent_bytes(17), 12345);
    EXPECT_EQ(calls, Texts{"SO_NWRITE"});
    EXPECT_EQ(sockets, std::vector<int>{17});
    unsent_result = -1;
    EXPECT_EQ(unsent_bytes(17), -1);
}

TEST_F(SocketSends, TellHowManyBytesWent)
{
    network.send_at_most = 2;
    EXPECT_EQ(send_piece(17, "piece", 5, true), 2);
    EXPECT_EQ(send_piece(17, "piece", 5, false), 2);
}

TEST_F(SocketSends, FailWithTheReasonOfTheSendItself)
{
    network.send_error_ms = 0;
    for (const int error_number : {EPIPE, EAGAIN, EINTR}) {
        network.send_error = error_number;
        for (const bool more : {true, false}) {
            errno = 0;
            EXPECT_EQ(send_piece(17, "piece", 5, more), -1);
            EXPECT_EQ(errno, error_number);
        }
    }
}

TEST_F(SocketSends, ATransactionPreparesItsSocketAtOnceAndItsSendsOnceConnected)
{
    EXPECT_EQ(run({}).result, 0);
    const Texts names = call_names();
    ASSERT_GE(names.size(), 6u);
    EXPECT_EQ(Texts(names.begin(), names.begin() + 3),
              (Texts{"socket", "SO_NOSIGPIPE", "connect"}));
    Texts prepared(names.begin() + 3, names.begin() + 5);
    std::sort(prepared.begin(), prepared.end());
    EXPECT_EQ(prepared, (Texts{"SO_SNDTIMEO", "TCP_NOPUSH"}));
    EXPECT_EQ(names[5], "send");
    // All on the one socket.
    EXPECT_EQ(std::count(sockets.begin(), sockets.end(), sockets[0]),
              static_cast<std::ptrdiff_t>(sockets.size()));
}

TEST_F(SocketSends, ATransactionHoldsItsPiecesBackUntilTheLast)
{
    struct {
        const char *method;
        const char *body;
        const char *last_piece;
    } const cases[] = {
        {"GET", "", "\r\n"},
        {"POST", "", "\r\n"},
        {"POST", "a=b", "a=b"},
    };
    for (const auto &[method, body, last_piece] : cases) {
        SCOPED_TRACE(std::string(method) + " " + body);
        calls.clear();
        network.events = {data("HTTP/1.0 200 OK\r\n\r\nbody"), peer_closes()};
        WebCall call;
        call.method = method;
        call.body = body;
        EXPECT_EQ(run(call).result, 0);
        ASSERT_GE(calls.size(), 7u);
        EXPECT_EQ(Texts(calls.end() - 2, calls.end()),
                  (Texts{"TCP_NOPUSH 0", std::string("send with flags 0: ") + last_piece}));
        for (std::size_t i = 5; i < calls.size() - 2; ++i) {
            EXPECT_EQ(calls[i].rfind("send with flags 0: ", 0), 0u) << calls[i];
        }
    }
}

TEST_F(SocketSends, ASocketThatCouldNotBeMadeIsNotPrepared)
{
    network.socket_error = EACCES;
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(calls, Texts{"socket"});
}

TEST_F(SocketSends, ASocketThatCouldNotBeConnectedIsNotPreparedForSends)
{
    network.connect_error = ECONNREFUSED;
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(calls, (Texts{"socket", "SO_NOSIGPIPE 1", "connect"}));
}
