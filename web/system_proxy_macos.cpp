#include <CoreFoundation/CoreFoundation.h>
#include <SystemConfiguration/SystemConfiguration.h>

#include "web/proxy.h"

namespace {

/// Reads an entry that must be there, be a number and fit into an int. A Boolean is no number.
bool read_number(CFDictionaryRef proxies, CFStringRef key, int &number)
{
    const CFTypeRef value = CFDictionaryGetValue(proxies, key);
    return value != nullptr && CFGetTypeID(value) == CFNumberGetTypeID() &&
           CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberIntType, &number) != 0;
}

bool read_text(CFDictionaryRef proxies, CFStringRef key, char *buffer, std::size_t size)
{
    const CFTypeRef value = CFDictionaryGetValue(proxies, key);
    return value != nullptr && CFGetTypeID(value) == CFStringGetTypeID() &&
           CFStringGetCString(static_cast<CFStringRef>(value), buffer, static_cast<CFIndex>(size),
                              kCFStringEncodingASCII) != 0;
}

bool read_http_proxy(CFDictionaryRef proxies, char *host_buffer, std::size_t buffer_size, int &port)
{
    int enabled = 0;
    return read_number(proxies, kSCPropNetProxiesHTTPEnable, enabled) && enabled != 0 &&
           read_text(proxies, kSCPropNetProxiesHTTPProxy, host_buffer, buffer_size) &&
           read_number(proxies, kSCPropNetProxiesHTTPPort, port);
}

} // namespace

bool system_http_proxy(char *host_buffer, std::size_t buffer_size, std::int32_t *port_out)
{
    const CFDictionaryRef proxies = SCDynamicStoreCopyProxies(nullptr);
    int port = 0;
    const bool found = proxies != nullptr && buffer_size > 0 &&
                       read_http_proxy(proxies, host_buffer, buffer_size, port);
    if (proxies != nullptr) {
        CFRelease(proxies);
    }
    if (!found && buffer_size > 0) {
        host_buffer[0] = '\0'; // also what a partly successful copy has left
    }
    *port_out = found ? port : 0;
    return found;
}
