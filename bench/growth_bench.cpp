// How the time grows when the work grows tenfold. No peers: each is compared with itself.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "bench/harness.h"
#include "bench/server.h"
#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"

namespace {

constexpr std::int64_t mebibyte = 1 << 20;
constexpr char prose[] = "The host asks the user for a name, and the user gives it one to keep. ";

std::size_t size_of(const benchmark::State &state)
{
    return static_cast<std::size_t>(state.range(0));
}

/// Sends standard output to /dev/null for as long as it lives.
class StandardOutputDropped {
public:
    StandardOutputDropped()
    {
        std::fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    StandardOutputDropped(const StandardOutputDropped &) = delete;
    StandardOutputDropped &operator=(const StandardOutputDropped &) = delete;
    ~StandardOutputDropped()
    {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }

private:
    int saved_;
};

void grow_wrap(benchmark::State &state)
{
    const std::string text = repeated(prose, size_of(state));
    std::vector<char> buffer(2 * text.size());
    for (auto _ : state) {
        std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
        wrap_text_in_place(buffer.data(), 72, 4, 0);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(grow_wrap)->Arg(mebibyte / 10)->Arg(mebibyte)->Unit(benchmark::kMillisecond);

void grow_insert(benchmark::State &state)
{
    const StandardOutputDropped dropped;
    const std::string text = repeated(prose, size_of(state));
    std::vector<char> buffer(text.size() + 16);
    std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
    for (auto _ : state) {
        insert_string_into_string("twelve bytes", buffer.data(), 0);
        buffer[text.size()] = '\0';
        benchmark::ClobberMemory();
    }
}
BENCHMARK(grow_insert)->Arg(mebibyte / 10)->Arg(mebibyte)->Unit(benchmark::kMicrosecond);

void grow_replace(benchmark::State &state)
{
    const std::string text = repeated(prose, size_of(state));
    std::vector<char> destination(2 * text.size() + 1);
    for (auto _ : state) {
        replace_all_substrings("user", "customer", text.c_str(), destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(grow_replace)->Arg(mebibyte / 10)->Arg(mebibyte)->Unit(benchmark::kMicrosecond);

/// Messages of so many lines, each after an indent.
void grow_message(benchmark::State &state)
{
    const StandardErrorTo redirected("/dev/null");
    std::string text;
    for (std::int64_t line = 0; line < state.range(0); ++line) {
        text += "Can't open file /Volumes/Work/picture.tif\n";
    }
    set_print_indent(4);
    for (auto _ : state) {
        report_message(9, "%s", text.c_str());
    }
    set_print_indent(0);
}
BENCHMARK(grow_message)->Arg(2)->Arg(20);

void grow_form(benchmark::State &state)
{
    const std::string value = repeated(prose, 40);
    const std::vector<FormField> fields(size_of(state), {"field name", value.c_str()});
    for (auto _ : state) {
        std::string header;
        std::string body;
        build_form_body(static_cast<int>(fields.size()), fields.data(), header, body);
        benchmark::DoNotOptimize(body.data());
    }
}
BENCHMARK(grow_form)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// A directory of so many files, removed when the program ends.
class Files {
public:
    explicit Files(std::int64_t count)
    {
        for (std::int64_t i = 0; i < count; ++i) {
            std::ofstream file(directory_.path() + "/file-" + std::to_string(i) + ".txt");
        }
    }
    const char *path() const
    {
        return directory_.path().c_str();
    }

private:
    TemporaryDirectory directory_;
};

void grow_walk(benchmark::State &state)
{
    static const Files few(10000);
    static const Files many(100000);
    const Files &files = state.range(0) == 10000 ? few : many;
    std::intptr_t count = 0;
    for (auto _ : state) {
        for_each_regular_file(
            files.path(),
            [](const char *, std::intptr_t user) {
                ++*reinterpret_cast<std::intptr_t *>(user);
                return 0;
            },
            reinterpret_cast<std::intptr_t>(&count));
    }
    if (count % state.range(0) != 0) {
        state.SkipWithError("the walk missed a file");
    }
}
BENCHMARK(grow_walk)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

std::string header_of(std::size_t size)
{
    std::string header = "HTTP/1.0 200 OK\r\n";
    while (header.size() + 66 < size) {
        header += "X-Padding: " + std::string(51, 'x') + "\r\n";
    }
    return header + "\r\n";
}

void grow_header(benchmark::State &state)
{
    const ForkedServer server(header_of(size_of(state)), 1);
    for (auto _ : state) {
        char *header = nullptr;
        char *body = nullptr;
        const int result = web_transaction("HTTP", "127.0.0.1", "/", server.port(), "GET", "", {},
                                           &header, &body, nullptr, 0, nullptr, nullptr);
        std::free(header);
        std::free(body);
        if (result != 0) {
            state.SkipWithError(web_last_error());
            return;
        }
    }
}
BENCHMARK(grow_header)->Arg(6554)->Arg(65536)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
