// Base64 against OpenSSL.
#include <openssl/evp.h>
#include <vector>

#include "bench/harness.h"
#include "web/web.h"

namespace {

constexpr int credentials_size = 20;
constexpr int large_size = 48 * 1024;

std::string bytes_of(int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(i * 197 + i / 256);
    }
    return bytes;
}

std::vector<char> destination_for(int size)
{
    return std::vector<char>(static_cast<std::size_t>(base64_encoded_length(size)) + 1);
}

void encode_by_peer(const std::string &source, char *destination)
{
    EVP_EncodeBlock(reinterpret_cast<unsigned char *>(destination),
                    reinterpret_cast<const unsigned char *>(source.data()),
                    static_cast<int>(source.size()));
}

bool same(int size)
{
    const std::string source = bytes_of(size);
    std::vector<char> ours = destination_for(size);
    std::vector<char> peer = destination_for(size);
    base64_encode(source.data(), size, ours.data());
    encode_by_peer(source, peer.data());
    return ours == peer;
}

const Agreement agreement("base64", [] { return same(credentials_size) && same(large_size); });

void base64_ours(benchmark::State &state)
{
    const int size = static_cast<int>(state.range(0));
    const std::string source = bytes_of(size);
    std::vector<char> destination = destination_for(size);
    for (auto _ : state) {
        base64_encode(source.data(), size, destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(base64_ours)->Arg(credentials_size)->Arg(large_size);

void base64_openssl(benchmark::State &state)
{
    const int size = static_cast<int>(state.range(0));
    const std::string source = bytes_of(size);
    std::vector<char> destination = destination_for(size);
    for (auto _ : state) {
        encode_by_peer(source, destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(base64_openssl)->Arg(credentials_size)->Arg(large_size);

} // namespace
