// Asks for a newer version, through the proxy that the command line names:
// update_query host:port
#include <cstdint>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"

int main(int count, char **vector)
{
    ProxySettings proxy;
    if (fill_proxy_settings(&proxy, count > 1 ? vector[1] : nullptr, nullptr, nullptr) != 0) {
        print_indented("Usage: update_query [host:port]\n");
        return 2;
    }
    char machine[256];
    get_host_name(machine, sizeof machine);
    char message[1024] = "";
    char version[1024] = "";
    const int result = query_product_update(
        "Example", "Examples", 5.1f, "5.1", "Mac OS X", "10.4.11", machine, "i386", sizeof message,
        message, version, nullptr, nullptr, proxy.proxy_host,
        static_cast<std::uint16_t>(proxy.proxy_port), nullptr, nullptr);
    if (result != WEB_DONE) {
        report_message(9, "No answer: %s", web_last_error());
        return 1;
    }
    set_print_stream(stdout);
    print_indented("Newest version: %s\n%s", version, message);
    return 0;
}
