#include <cstdio>

#include "web/web.h"

int main()
{
    char *header = nullptr;
    char *body = nullptr;
    const int result = web_transaction("FTP", "host", "/", 80, "GET", "", "", &header, &body,
                                       nullptr, 0, nullptr, nullptr);
    std::printf("%d %s\n", result, web_last_error());
}
