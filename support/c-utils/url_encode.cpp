#include "support/c-utils/url_encode.h"

#include <cstring>

#include "support/c-utils/percent.h"

namespace {

bool is_plain(unsigned char byte)
{
    return is_ascii_alphanumeric(byte) ||
           (byte != '\0' && std::strchr("$-_.+!*(),", byte) != nullptr);
}

} // namespace

char *url_encode(const char *source, char *destination)
{
    char *out = destination;
    for (; *source != '\0'; ++source) {
        const unsigned char byte = static_cast<unsigned char>(*source);
        if (is_plain(byte)) {
            *out++ = *source;
        } else {
            out = write_percent_escape(out, byte, "0123456789ABCDEF");
        }
    }
    *out = '\0';
    return destination;
}
