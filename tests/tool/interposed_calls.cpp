// Calls of the system as no test can arrange them, for the program that is linked with this. The
// environment chooses:
//   INTERPOSED_TWIN        a file whose inode number standard output has, on another file system
//   INTERPOSED_HOST_NAME   what gethostname() stores
//   INTERPOSED_CLOCK_JUMP  the seconds that pass during the first look-up
//   INTERPOSED_SIGNAL      the number of a signal that comes with the end of the reply
#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

long seconds_ahead = 0;

} // namespace

extern "C" int fstat(int descriptor, struct stat *status) noexcept
{
    const char *const twin = std::getenv("INTERPOSED_TWIN");
    if (twin == nullptr || descriptor != STDOUT_FILENO) {
        return fstatat(descriptor, "", status, AT_EMPTY_PATH);
    }
    const int result = stat(twin, status);
    ++status->st_dev;
    return result;
}

extern "C" int gethostname(char *name, std::size_t size) noexcept
{
    const char *const text = std::getenv("INTERPOSED_HOST_NAME");
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    std::memcpy(name, text != nullptr ? text : "", std::min(length + 1, size));
    return 0;
}

extern "C" int gettimeofday(timeval *time, void *) noexcept
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    time->tv_sec = now.tv_sec + seconds_ahead;
    time->tv_usec = now.tv_nsec / 1000;
    return 0;
}

// Every name is this machine's.
extern "C" hostent *gethostbyname(const char *)
{
    static in_addr loopback = {htonl(INADDR_LOOPBACK)};
    static char *addresses[] = {reinterpret_cast<char *>(&loopback), nullptr};
    static hostent host = {};
    host.h_addrtype = AF_INET;
    host.h_length = sizeof loopback;
    host.h_addr_list = addresses;
    const char *const jump = std::getenv("INTERPOSED_CLOCK_JUMP");
    seconds_ahead = jump != nullptr ? std::strtol(jump, nullptr, 10) : 0;
    return &host;
}

extern "C" ssize_t recv(int socket, void *buffer, std::size_t size, int flags)
{
    const ssize_t received = recvfrom(socket, buffer, size, flags, nullptr, nullptr);
    const char *const number = std::getenv("INTERPOSED_SIGNAL");
    if (received == 0 && number != nullptr) {
        std::raise(static_cast<int>(std::strtol(number, nullptr, 10)));
    }
    return received;
}
