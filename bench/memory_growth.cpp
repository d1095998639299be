// memory_growth MEBIBYTES: prints by how many bytes the process's peak memory grows while one
// transaction receives a body of that size.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>

#include "bench/server.h"
#include "web/web.h"

namespace {

long peak_bytes()
{
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

/// \return the size of the body, 0 when there is none.
std::size_t receive_body(std::uint16_t port)
{
    char *header = nullptr;
    char *body = nullptr;
    web_transaction("HTTP", "127.0.0.1", "/", port, "GET", "", {}, &header, &body, nullptr, 0,
                    nullptr, nullptr);
    const std::size_t size = body != nullptr ? std::strlen(body) : 0;
    std::free(header);
    std::free(body);
    return size;
}

} // namespace

int main(int count, char **vector)
{
    if (count != 2) {
        std::fputs("usage: memory_growth MEBIBYTES\n", stderr);
        return 2;
    }
    const std::size_t size = std::strtoul(vector[1], nullptr, 10) << 20;
    const ForkedServer server("HTTP/1.0 200 OK\r\n\r\n", size);
    // What the first transaction of a process needs once is no part of the growth.
    const ForkedServer small("HTTP/1.0 200 OK\r\n\r\n", 1);
    receive_body(small.port());

    const long before = peak_bytes();
    if (receive_body(server.port()) != size) {
        std::fprintf(stderr, "the body did not arrive: %s\n", web_last_error());
        return 1;
    }
    std::printf("%ld\n", peak_bytes() - before);
    return 0;
}
