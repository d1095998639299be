#include "tests/frameworks/text_encodings.h"

#include <gtest/gtest.h>

namespace {

unsigned byte_at(const std::string &text, std::size_t i)
{
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

/// The length of the UTF-8 character at \p i, 0 when there is none.
std::size_t utf8_length(const std::string &text, std::size_t i)
{
    const unsigned lead = byte_at(text, i);
    const std::size_t length = lead < 0x80                    ? 1
                               : lead >= 0xc2 && lead <= 0xdf ? 2
                               : lead >= 0xe0 && lead <= 0xef ? 3
                               : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                              : 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte_at(text, i + k) & 0xc0) != 0x80) {
            return 0;
        }
    }
    // Overlong forms, surrogates and what is past U+10FFFF.
    const unsigned second = byte_at(text, i + 1);
    const bool refused = (lead == 0xe0 && second < 0xa0) || (lead == 0xed && second >= 0xa0) ||
                         (lead == 0xf0 && second < 0x90) || (lead == 0xf4 && second >= 0x90);
    return refused ? 0 : length;
}

bool is_utf8(const std::string &text)
{
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = utf8_length(text, i);
        if (length == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

bool is_ascii(const std::string &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (byte_at(text, i) >= 0x80) {
            return false;
        }
    }
    return true;
}

std::string latin1_as_utf8(const std::string &bytes)
{
    std::string utf8;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned byte = byte_at(bytes, i);
        if (byte >= 0x80) {
            utf8 += static_cast<char>(0xc0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3f));
        } else {
            utf8 += static_cast<char>(byte);
        }
    }
    return utf8;
}

/// The one byte of the character at \p i in an encoding of codes below \p limit, or -1.
int single_byte(const std::string &utf8, std::size_t i, unsigned limit)
{
    const unsigned lead = byte_at(utf8, i);
    const unsigned code = lead < 0x80   ? lead
                          : lead < 0xc4 ? ((lead & 0x1f) << 6) | (byte_at(utf8, i + 1) & 0x3f)
                                        : limit;
    return code < limit ? static_cast<int>(code) : -1;
}

} // namespace

std::optional<std::string> decode(const std::string &bytes, CFStringEncoding encoding)
{
    switch (encoding) {
    case kCFStringEncodingASCII:
        return is_ascii(bytes) ? std::optional(bytes) : std::nullopt;
    case kCFStringEncodingISOLatin1:
        return latin1_as_utf8(bytes);
    case kCFStringEncodingUTF8:
        return is_utf8(bytes) ? std::optional(bytes) : std::nullopt;
    default:
        ADD_FAILURE() << "an encoding that the stand-ins do not know: " << encoding;
        return std::nullopt;
    }
}

std::string encode(const std::string &utf8, CFStringEncoding encoding, bool &whole)
{
    if (encoding == kCFStringEncodingUTF8) {
        return utf8;
    }
    if (encoding != kCFStringEncodingASCII && encoding != kCFStringEncodingISOLatin1) {
        ADD_FAILURE() << "an encoding that the stand-ins do not know: " << encoding;
        whole = false;
        return {};
    }
    const unsigned limit = encoding == kCFStringEncodingISOLatin1 ? 0x100 : 0x80;
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); i += utf8_length(utf8, i)) {
        const int byte = single_byte(utf8, i, limit);
        if (byte < 0) {
            whole = false;
            break;
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}
