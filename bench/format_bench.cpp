// Printing to new text against libc's asprintf, the growable text against GLib's GString.
#include <cstdio>
#include <cstdlib>
#include <glib.h>

#include "bench/harness.h"
#include "support/c-utils.h"
#include "support/error.h"

namespace {

// 60 characters.
#define SENTENCE "%s: %d of %d files copied to %s in %.2f seconds"
#define SENTENCE_ARGUMENTS "Info", 17, 204, "/Users/Work", 12.75

char *print_by_peer()
{
    char *text = nullptr;
    return asprintf(&text, SENTENCE, SENTENCE_ARGUMENTS) < 0 ? nullptr : text;
}

const Agreement format_agreement("format_string_new", [] {
    char *const ours = format_string_new(SENTENCE, SENTENCE_ARGUMENTS);
    char *const peer = print_by_peer();
    const bool same = std::string(ours) == peer && std::string(ours).size() == 60;
    checked_free(ours);
    std::free(peer);
    return same;
});

void format_ours(benchmark::State &state)
{
    for (auto _ : state) {
        char *const text = format_string_new(SENTENCE, SENTENCE_ARGUMENTS);
        benchmark::DoNotOptimize(text);
        checked_free(text);
    }
}
BENCHMARK(format_ours);

void format_libc(benchmark::State &state)
{
    for (auto _ : state) {
        char *const text = print_by_peer();
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
}
BENCHMARK(format_libc);

// 16 characters an append.
constexpr int appends = 20000;

void append_ours(string_buffer &buffer)
{
    for (int i = 0; i < appends; ++i) {
        string_buffer_append_format(&buffer, "%s=%05d and ", "item", i);
    }
}

void append_by_peer(GString *string)
{
    for (int i = 0; i < appends; ++i) {
        g_string_append_printf(string, "%s=%05d and ", "item", i);
    }
}

const Agreement append_agreement("string_buffer_append_format", [] {
    string_buffer ours = {};
    append_ours(ours);
    GString *const peer = g_string_new(nullptr);
    append_by_peer(peer);
    const bool same = std::string(ours.data, ours.length) == std::string(peer->str, peer->len);
    string_buffer_free(&ours);
    g_string_free(peer, TRUE);
    return same;
});

void append_ours(benchmark::State &state)
{
    for (auto _ : state) {
        string_buffer buffer = {};
        append_ours(buffer);
        benchmark::DoNotOptimize(buffer.data);
        string_buffer_free(&buffer);
    }
}
BENCHMARK(append_ours);

void append_glib(benchmark::State &state)
{
    for (auto _ : state) {
        GString *const string = g_string_new(nullptr);
        append_by_peer(string);
        benchmark::DoNotOptimize(string->str);
        g_string_free(string, TRUE);
    }
}
BENCHMARK(append_glib);

} // namespace
