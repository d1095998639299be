// Systems other than Mac OS X are not asked for their network settings.
#include "web/proxy.h"

bool system_http_proxy(char *host_buffer, std::size_t buffer_size, std::int32_t *port_out)
{
    if (buffer_size > 0) {
        host_buffer[0] = '\0';
    }
    *port_out = 0;
    return false;
}
