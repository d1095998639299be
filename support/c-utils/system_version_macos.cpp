#include <CoreServices/CoreServices.h>

#include "support/c-utils/copy.h"
#include "support/c-utils/format.h"
#include "support/c-utils/system.h"

namespace {

/// The hexadecimal digit of the response at \p position, counted from the right.
int response_digit(SInt32 response, int position)
{
    return static_cast<int>(response >> 4 * position & 0xf);
}

} // namespace

char *get_os_version(char *buffer, std::size_t size)
{
    SInt32 response = 0;
    if (Gestalt(gestaltSystemVersion, &response) != noErr) {
        return copy_string_bounded(buffer, "unknown", size);
    }
    // The first two digits together are the major version: 0x104b is 10.4.11.
    format_string_bounded(buffer, size, "%d%d.%d.%d", response_digit(response, 3),
                          response_digit(response, 2), response_digit(response, 1),
                          response_digit(response, 0));
    return buffer;
}
