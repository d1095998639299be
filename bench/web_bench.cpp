// Transactions on the loopback interface against libcurl and against their own system calls.
#include <cstdlib>
#include <curl/curl.h>
#include <malloc.h>
#include <memory>

#include "bench/bare_exchange.h"
#include "bench/harness.h"
#include "bench/server.h"
#include "web/web.h"

namespace {

constexpr std::size_t header_size = 180;
constexpr std::size_t small_body_size = 200;
constexpr std::size_t mebibyte = 1 << 20;

/// A reply's header of header_size bytes, its empty line included.
std::string reply_header()
{
    std::string header = "HTTP/1.0 200 OK\r\n"
                         "Server: Bench\r\n"
                         "Content-Type: text/plain\r\n"
                         "Connection: close\r\n"
                         "X-Padding: ";
    header.append(header_size - 4 - header.size(), 'x');
    return header + "\r\n\r\n";
}

std::uint16_t port_of_small_reply()
{
    static const ForkedServer server(reply_header(), small_body_size);
    return server.port();
}

std::uint16_t port_of_large_reply(std::int64_t mebibytes)
{
    static const ForkedServer medium(reply_header(), 32 * mebibyte);
    static const ForkedServer large(reply_header(), 128 * mebibyte);
    return mebibytes == 32 ? medium.port() : large.port();
}

struct reply {
    std::string header;
    std::string body;
};

using text = std::unique_ptr<char, void (*)(void *)>;

/// Gets a reply and leaves it where the transaction put it.
bool get_ours(std::uint16_t port, text &header, text &body)
{
    char *header_out = nullptr;
    char *body_out = nullptr;
    const int result = web_transaction("HTTP", "127.0.0.1", "/", port, "GET", "", {}, &header_out,
                                       &body_out, nullptr, 0, nullptr, nullptr);
    header.reset(header_out);
    body.reset(body_out);
    return result == 0;
}

reply get_ours(std::uint16_t port)
{
    text header(nullptr, std::free);
    text body(nullptr, std::free);
    if (!get_ours(port, header, body)) {
        return {};
    }
    return {header.get(), body.get()};
}

std::size_t append_to_string(char *bytes, std::size_t size, std::size_t count, void *string)
{
    static_cast<std::string *>(string)->append(bytes, size * count);
    return size * count;
}

/// With a handle of its own, as a program does that asks once.
reply get_by_curl(std::uint16_t port)
{
    reply result;
    const std::string url = "http://127.0.0.1:" + std::to_string(port) + "/";
    CURL *const handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
    curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(handle, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, append_to_string);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &result.body);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, append_to_string);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &result.header);
    curl_easy_perform(handle);
    curl_easy_cleanup(handle);
    return result;
}

// By default the allocator learns to keep freed blocks of some MiB for the next iteration. Here
// each large body comes to fresh memory, as it does to a program that asks once.
const bool memory_is_fresh = mallopt(M_MMAP_THRESHOLD, 128 * 1024) == 1;

// Otherwise each handle that is the only one would start and end the library.
const bool curl_is_started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;

const Agreement request_agreement("the request of the bare exchange", [] {
    const ForkedServer server = ForkedServer::echoing(reply_header());
    const std::string ours = get_ours(server.port()).body;
    return !ours.empty() && ours == bare_get(server.port(), header_size);
});

const Agreement small_agreement("the small reply", [] {
    const reply ours = get_ours(port_of_small_reply());
    const reply peer = get_by_curl(port_of_small_reply());
    return ours.header.size() + 1 == header_size && ours.header + "\n" == peer.header &&
           ours.body.size() == small_body_size && ours.body == peer.body &&
           ours.body == bare_get(port_of_small_reply(), header_size) &&
           ours.body == bare_get_with_whole_header(port_of_small_reply(), header_size);
});

const Agreement large_agreement("the large replies", [] {
    for (const std::size_t mebibytes : {32u, 128u}) {
        const std::uint16_t port = port_of_large_reply(static_cast<std::int64_t>(mebibytes));
        const reply ours = get_ours(port);
        if (ours.body.size() != mebibytes * mebibyte || ours.body != get_by_curl(port).body ||
            bare_receive_and_drop(port) != header_size + mebibytes * mebibyte ||
            bare_receive_large_and_drop(port) != header_size + mebibytes * mebibyte) {
            return false;
        }
    }
    return curl_is_started && memory_is_fresh;
});

void get_ours(benchmark::State &state, std::uint16_t port)
{
    for (auto _ : state) {
        text header(nullptr, std::free);
        text body(nullptr, std::free);
        if (!get_ours(port, header, body)) {
            state.SkipWithError(web_last_error());
            return;
        }
        benchmark::DoNotOptimize(body.get());
    }
}

void small_ours(benchmark::State &state)
{
    get_ours(state, port_of_small_reply());
}
BENCHMARK(small_ours)->UseRealTime()->Unit(benchmark::kMicrosecond);

void small_bare(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare_get(port_of_small_reply(), header_size));
    }
}
BENCHMARK(small_bare)->UseRealTime()->Unit(benchmark::kMicrosecond);

void small_bare_whole_header(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare_get_with_whole_header(port_of_small_reply(), header_size));
    }
}
BENCHMARK(small_bare_whole_header)->UseRealTime()->Unit(benchmark::kMicrosecond);

void small_curl(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(get_by_curl(port_of_small_reply()));
    }
}
BENCHMARK(small_curl)->UseRealTime()->Unit(benchmark::kMicrosecond);

void body_ours(benchmark::State &state)
{
    get_ours(state, port_of_large_reply(state.range(0)));
}
BENCHMARK(body_ours)->Arg(32)->Arg(128)->UseRealTime()->Unit(benchmark::kMillisecond);

void body_curl(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(get_by_curl(port_of_large_reply(state.range(0))));
    }
}
BENCHMARK(body_curl)->Arg(128)->UseRealTime()->Unit(benchmark::kMillisecond);

void body_bare(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare_receive_and_drop(port_of_large_reply(state.range(0))));
    }
}
BENCHMARK(body_bare)->Arg(128)->UseRealTime()->Unit(benchmark::kMillisecond);

void body_bare_large(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare_receive_large_and_drop(port_of_large_reply(state.range(0))));
    }
}
BENCHMARK(body_bare_large)->Arg(128)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
