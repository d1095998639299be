#include "web/proxy.h"

#include <algorithm>
#include <cstring>

#include "support/c-utils.h"
#include "support/c-utils/decimal.h"

int fill_proxy_settings(ProxySettings *settings, const char *proxy_option, const char *user_option,
                        const char *password_option)
{
    *settings = {};
    if (proxy_option == nullptr) {
        system_http_proxy(settings->proxy_host, sizeof settings->proxy_host, &settings->proxy_port);
        return 0;
    }
    const char *const colon = std::strchr(proxy_option, ':');
    if (colon == nullptr) {
        return -1;
    }
    settings->proxy_port = corvella::decimal_or_zero(colon + 1);
    if (settings->proxy_port == 0) {
        return -1;
    }
    const std::size_t host_size = static_cast<std::size_t>(colon - proxy_option) + 1;
    copy_string_bounded(settings->proxy_host, proxy_option,
                        std::min(host_size, sizeof settings->proxy_host));
    copy_string_bounded(settings->user, user_option, sizeof settings->user);
    copy_string_bounded(settings->password, password_option, sizeof settings->password);
    return 0;
}
