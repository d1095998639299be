// Form escaping and URL encoding against libcurl and GLib.
//
// The sets of plain characters differ, and the case of the hexadecimal digits. Each text keeps to
// characters that all three treat alike, so that all do the same work.
#include <curl/curl.h>
#include <glib.h>
#include <vector>

#include "bench/harness.h"
#include "support/c-utils.h"
#include "web/web.h"

namespace {

constexpr std::size_t prose_size = 900;

/// Nothing but letters and digits is plain, and no escape has a letter in it.
const std::string &form_prose()
{
    static const std::string text =
        repeated("When the 3 plug ins (of 12) had loaded the host said \"Ready\" and the user's "
                 "window opened at 100% size! ",
                 prose_size);
    return text;
}

/// Full stops and hyphens are plain, spaces and the other marks are escaped.
const std::string &url_prose()
{
    static const std::string text =
        repeated("When the 3 plug-ins had loaded the host said: \"Ready\"; the user's window "
                 "opened at 100% size. Was it full-screen? ",
                 prose_size);
    return text;
}

std::string escaped_by_curl(const std::string &text)
{
    char *const escaped = curl_easy_escape(nullptr, text.c_str(), 0);
    const std::string result = escaped;
    curl_free(escaped);
    return result;
}

std::string escaped_by_glib(const std::string &text)
{
    char *const escaped = g_uri_escape_string(text.c_str(), nullptr, FALSE);
    const std::string result = escaped;
    g_free(escaped);
    return result;
}

std::vector<char> destination_for(const std::string &text)
{
    return std::vector<char>(3 * text.size() + 1);
}

const Agreement form_agreement("form_escape", [] {
    const std::string ours =
        form_escape(destination_for(form_prose()).data(), form_prose().c_str());
    return ours == escaped_by_curl(form_prose()) && ours == escaped_by_glib(form_prose());
});

const Agreement url_agreement("url_encode", [] {
    const std::string ours = url_encode(url_prose().c_str(), destination_for(url_prose()).data());
    return ours == escaped_by_curl(url_prose()) && ours == escaped_by_glib(url_prose());
});

void form_escape_ours(benchmark::State &state)
{
    std::vector<char> destination = destination_for(form_prose());
    for (auto _ : state) {
        form_escape(destination.data(), form_prose().c_str());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(form_escape_ours);

void url_encode_ours(benchmark::State &state)
{
    std::vector<char> destination = destination_for(url_prose());
    for (auto _ : state) {
        url_encode(url_prose().c_str(), destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(url_encode_ours);

void escape_by_curl(benchmark::State &state, const std::string &text)
{
    for (auto _ : state) {
        char *const escaped = curl_easy_escape(nullptr, text.c_str(), 0);
        benchmark::DoNotOptimize(escaped);
        curl_free(escaped);
    }
}

void escape_by_glib(benchmark::State &state, const std::string &text)
{
    for (auto _ : state) {
        char *const escaped = g_uri_escape_string(text.c_str(), nullptr, FALSE);
        benchmark::DoNotOptimize(escaped);
        g_free(escaped);
    }
}

void form_escape_curl(benchmark::State &state)
{
    escape_by_curl(state, form_prose());
}
BENCHMARK(form_escape_curl);

void form_escape_glib(benchmark::State &state)
{
    escape_by_glib(state, form_prose());
}
BENCHMARK(form_escape_glib);

void url_encode_curl(benchmark::State &state)
{
    escape_by_curl(state, url_prose());
}
BENCHMARK(url_encode_curl);

void url_encode_glib(benchmark::State &state)
{
    escape_by_glib(state, url_prose());
}
BENCHMARK(url_encode_glib);

} // namespace
