#include "support/c-utils/url_encode.h"

#include "support/c-utils/percent.h"

namespace {

constexpr corvella::percent_table url_codes =
    corvella::make_percent_table("$-_.+!*(),", "0123456789ABCDEF");

} // namespace

char *url_encode(const char *source, char *destination)
{
    corvella::copy_percent_coded(destination, source, url_codes);
    return destination;
}
