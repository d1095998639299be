#include "tests/web/fake_network.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <utility>

#include "tests/harness/libc_noexcept.h"
#include "tests/web/web_call.h"
#include "web/web.h"

FakeNetwork network;

namespace {

/// From here the millisecond counter counts.
constexpr std::int64_t counter_base_ms = 1050000000LL * 1000;
std::int64_t start_ms = 0;

int fails_with(int error_number)
{
    errno = error_number;
    return -1;
}

bool is_next(NetworkEvent::Kind kind)
{
    return !network.events.empty() && network.events.front().kind == kind;
}

/// Whether the client has said itself that it sends no more.
bool sending_is_shut_down()
{
    return std::any_of(
        network.shutdowns.begin(), network.shutdowns.end(),
        [](const FakeNetwork::Shutdown &shutdown) { return shutdown.how != SHUT_RD; });
}

/// What the peer has got of the request, counted from the connection on.
struct Transfer {
    std::size_t start = 0; ///< bytes of network.sent that were for earlier connections
    std::size_t taken = 0;
    std::int64_t begun_ms = 0;
    std::int64_t counted_ms = 0; ///< up to when \a taken is right
};
Transfer transfer;

std::size_t accepted_bytes()
{
    return network.sent.size() - std::min(transfer.start, network.sent.size());
}

/// Brings the count of taken bytes up to now. \return how many the system still holds.
std::size_t held_bytes()
{
    const std::size_t accepted = accepted_bytes();
    if (network.taken_per_ms < 0) {
        transfer.taken = accepted;
        return 0;
    }
    std::int64_t until_ms = network.clock_ms;
    if (network.takes_for_ms < until_ms - transfer.begun_ms) {
        until_ms = transfer.begun_ms + network.takes_for_ms;
    }
    if (until_ms > transfer.counted_ms) {
        const std::int64_t more = (until_ms - transfer.counted_ms) * network.taken_per_ms;
        transfer.taken = std::min(accepted, transfer.taken + static_cast<std::size_t>(more));
        transfer.counted_ms = until_ms;
    }
    return accepted - transfer.taken;
}

/// How much a send may add. As the system does, waits up to 100 ms for a third of the buffer.
std::size_t room_for_send()
{
    if (held_bytes() < network.send_buffer) {
        return network.send_buffer - held_bytes();
    }
    network.clock_ms += 100;
    const std::size_t room = network.send_buffer - std::min(held_bytes(), network.send_buffer);
    return room >= network.send_buffer / 3 ? room : 0;
}

/// Lets up to \p limit_ms pass; false when something happens before they have.
bool silence_fills(std::int64_t limit_ms)
{
    while (is_next(NetworkEvent::Silence) || is_next(NetworkEvent::ClockStep)) {
        NetworkEvent &event = network.events.front();
        if (event.kind == NetworkEvent::Silence && event.number > limit_ms) {
            event.number -= limit_ms;
            network.clock_ms += limit_ms;
            return true;
        }
        limit_ms -= event.kind == NetworkEvent::Silence ? event.number : 0;
        network.clock_ms += event.number;
        network.events.pop_front();
    }
    if (network.events.empty()) {
        network.clock_ms += limit_ms;
        return true;
    }
    return false;
}

} // namespace

NetworkEvent data(std::string bytes)
{
    return {NetworkEvent::Data, std::move(bytes)};
}

NetworkEvent silence(std::int64_t milliseconds)
{
    return {NetworkEvent::Silence, {}, milliseconds};
}

NetworkEvent peer_closes()
{
    return {NetworkEvent::Close};
}

NetworkEvent receive_error(int error_number)
{
    return {NetworkEvent::ReceiveError, {}, error_number};
}

NetworkEvent select_error(int error_number)
{
    return {NetworkEvent::SelectError, {}, error_number};
}

NetworkEvent wrong_readiness()
{
    return {NetworkEvent::WrongReadiness};
}

NetworkEvent clock_step(std::int64_t milliseconds)
{
    return {NetworkEvent::ClockStep, {}, milliseconds};
}

FakeNetworkTest::FakeNetworkTest() : descriptors_(open_descriptor_count())
{
    network = FakeNetwork();
    set_counter(1000000);
    set_web_idle_callback(nullptr, nullptr);
    set_web_error("earlier");
    web_cancel_requested = 0;
}

FakeNetworkTest::~FakeNetworkTest()
{
    EXPECT_EQ(open_descriptor_count(), descriptors_);
    EXPECT_FALSE(network.received_without_data);
    EXPECT_EQ(network.receive_flags, 0);
}

void FakeNetworkTest::set_counter(std::uint32_t value)
{
    network.clock_ms = start_ms = counter_base_ms + value;
}

std::int64_t FakeNetworkTest::elapsed_ms()
{
    return network.clock_ms - start_ms;
}

// What follows takes the place of the system's functions in the whole program.
extern "C" {

hostent *gethostbyname(const char *name)
{
    static std::vector<in_addr> addresses;
    static std::vector<char *> pointers;
    static hostent entry;
    network.lookups.emplace_back(name);
    if (network.lookup_error != 0) {
        h_errno = network.lookup_error;
        return nullptr;
    }
    addresses.clear();
    pointers.clear();
    for (const char *text : network.addresses) {
        addresses.push_back({inet_addr(text)});
    }
    for (in_addr &address : addresses) {
        pointers.push_back(reinterpret_cast<char *>(&address));
    }
    pointers.push_back(nullptr);
    entry = {};
    entry.h_addrtype = AF_INET;
    entry.h_length = sizeof(in_addr);
    entry.h_addr_list = pointers.data();
    return &entry;
}

int socket(int family, int type, int protocol) LIBC_NOEXCEPT
{
    network.sockets.push_back({family, type, protocol});
    if (network.socket_error != 0) {
        return fails_with(network.socket_error);
    }
    return open("/dev/null", O_RDWR); // a real descriptor, so that closing it can be seen
}

int connect(int, const sockaddr *address, socklen_t size)
{
    sockaddr_in copy = {};
    std::memcpy(&copy, address, std::min<std::size_t>(size, sizeof copy));
    network.connects.push_back(copy);
    transfer = {network.sent.size(), 0, network.clock_ms, network.clock_ms};
    return network.connect_error != 0 ? fails_with(network.connect_error) : 0;
}

ssize_t send(int, const void *bytes, size_t size, int flags)
{
    static int interruptions = 0;
    if (size > 0 && network.keeps_records) {
        network.sends.push_back({{static_cast<const char *>(bytes), size}, flags});
    }
    if (network.send_error != 0) {
        network.clock_ms += network.send_error_ms; // or whoever tries again would do so for ever
        return fails_with(network.send_error);
    }
    if (interruptions++ < network.send_interruptions) {
        network.clock_ms += network.send_interruption_ms;
        return fails_with(EINTR);
    }
    interruptions = 0;
    if (network.keeps_records && network.sends.size() == network.lost_send + 1) {
        return fails_with(ENOBUFS);
    }
    if (sending_is_shut_down()) {
        return fails_with(EPIPE);
    }
    const std::size_t room = room_for_send();
    if (room == 0 && size > 0) {
        return fails_with(EAGAIN);
    }
    const std::size_t count = std::min({size, network.send_at_most, room});
    network.sent.append(static_cast<const char *>(bytes), count);
    return static_cast<ssize_t>(count);
}

#ifdef __linux__
// SIOCOUTQ is the only request.
int ioctl(int, unsigned long request, ...) LIBC_NOEXCEPT
{
    ++network.unsent_queries;
    if (!network.tells_unsent) {
        return fails_with(ENOTTY);
    }
    std::va_list arguments;
    va_start(arguments, request);
    *va_arg(arguments, int *) = static_cast<int>(held_bytes());
    va_end(arguments);
    return 0;
}
#endif

int shutdown(int, int how) LIBC_NOEXCEPT
{
    network.shutdowns.push_back({how, network.sends.size()});
    return 0;
}

int select(int width, fd_set *reading, fd_set *, fd_set *, timeval *limit)
{
    if (network.keeps_records) {
        const std::int64_t microseconds = limit->tv_sec * 1000000LL + limit->tv_usec;
        network.waits.push_back({width, microseconds, network.clock_ms});
    }
    if (silence_fills(limit->tv_sec * 1000LL + limit->tv_usec / 1000)) {
        FD_ZERO(reading);
        return 0;
    }
    if (is_next(NetworkEvent::SelectError)) {
        const int error_number = static_cast<int>(network.events.front().number);
        network.events.pop_front();
        return fails_with(error_number);
    }
    if (is_next(NetworkEvent::WrongReadiness)) {
        network.events.pop_front();
        FD_ZERO(reading);
    }
    return 1;
}

ssize_t recv(int, void *buffer, size_t room, int flags)
{
    if (network.keeps_records) {
        network.receives.push_back(room);
    }
    network.receive_flags |= flags;
    silence_fills(0); // the clock may be set between two calls
    if (is_next(NetworkEvent::Close)) {
        return 0; // and stays closed
    }
    if (is_next(NetworkEvent::ReceiveError)) {
        const int error_number = static_cast<int>(network.events.front().number);
        network.events.pop_front();
        network.clock_ms += network.receive_error_ms;
        return fails_with(error_number);
    }
    if (!is_next(NetworkEvent::Data)) {
        network.received_without_data = true;
        return fails_with(ENOTCONN);
    }
    NetworkEvent &event = network.events.front();
    const std::size_t left = event.bytes.size() - event.taken;
    const std::size_t count = std::min({room, left, network.receive_at_most});
    std::memcpy(buffer, event.bytes.data() + event.taken, count);
    if ((flags & MSG_PEEK) == 0) {
        event.taken += count;
        if (count == left) {
            network.events.pop_front();
        }
    }
    return static_cast<ssize_t>(count);
}

#ifdef __GLIBC__
// What recv is called in a program that is compiled with _FORTIFY_SOURCE.
ssize_t checked_recv(int descriptor, void *buffer, size_t room, size_t buffer_size,
                     int flags) __asm__("__recv_chk");

ssize_t checked_recv(int descriptor, void *buffer, size_t room, size_t buffer_size, int flags)
{
    EXPECT_LE(room, buffer_size);
    return recv(descriptor, buffer, room, flags);
}
#endif

int gettimeofday(timeval *now, void *) LIBC_NOEXCEPT
{
    // Divided only where it has moved: 64 bits take long on a machine of 32.
    static std::int64_t divided_ms = -1;
    static timeval divided = {};
    if (divided_ms != network.clock_ms) {
        divided_ms = network.clock_ms;
        divided.tv_sec = static_cast<decltype(divided.tv_sec)>(divided_ms / 1000);
        divided.tv_usec = static_cast<decltype(divided.tv_usec)>(divided_ms % 1000 * 1000);
    }
    *now = divided;
    return 0;
}
}
