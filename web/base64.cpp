#include "web/base64.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two characters of 12 bits.
struct digit_pair {
    char first;
    char second;
};

constexpr std::array<digit_pair, 4096> make_digit_pairs()
{
    std::array<digit_pair, 4096> pairs = {};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits) {
        pairs[bits] = {alphabet[bits >> 6], alphabet[bits & 0x3f]};
    }
    return pairs;
}

constexpr std::array<digit_pair, 4096> digit_pairs = make_digit_pairs();

/// Writes the four characters of 24 bits.
char *write_group(char *out, std::uint32_t bits)
{
    std::memcpy(out, &digit_pairs[bits >> 12], sizeof(digit_pair));
    std::memcpy(out + 2, &digit_pairs[bits & 0xfff], sizeof(digit_pair));
    return out + 4;
}

} // namespace

int base64_encoded_length(int n)
{
    const std::int64_t length = (std::int64_t{n} + 2) / 3 * 4;
    return static_cast<int>(static_cast<std::uint32_t>(length));
}

char *base64_encode(const void *source, int n, char *destination)
{
    const unsigned char *in = static_cast<const unsigned char *>(source);
    char *out = destination;
    for (; n >= 3; n -= 3, in += 3) {
        out = write_group(out, std::uint32_t{in[0]} << 16 | std::uint32_t{in[1]} << 8 | in[2]);
    }
    if (n == 2) {
        out = write_group(out, std::uint32_t{in[0]} << 16 | std::uint32_t{in[1]} << 8);
        out[-1] = '=';
    } else if (n == 1) {
        out = write_group(out, std::uint32_t{in[0]} << 16);
        out[-1] = '=';
        out[-2] = '=';
    }
    *out = '\0';
    return destination;
}
