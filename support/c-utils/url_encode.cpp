#include "support/c-utils/url_encode.h"

#include "support/c-utils/percent.h"

namespace {

constexpr percent_table url_codes = make_percent_table("$-_.+!*(),", "0123456789ABCDEF");

} // namespace

char *url_encode(const char *source, char *destination)
{
    copy_percent_coded(destination, source, url_codes);
    return destination;
}
