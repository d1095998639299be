// Gets a page and writes its body to standard output: get_page URL
#include <cstdio>
#include <cstdlib>

#include "support/error.h"
#include "web/web.h"

int main(int count, char **vector)
{
    if (count != 2) {
        print_indented("Usage: get_page URL\n");
        return 2;
    }
    char *header = nullptr;
    char *body = nullptr;
    int result =
        web_request(vector[1], "GET", 0, nullptr, &header, &body, nullptr, 0, nullptr, nullptr);
    if (result == WEB_DONE) {
        result = check_reply_status(header);
    }
    if (result == WEB_DONE) {
        result = check_reply_complete(header, body);
    }
    if (result == WEB_DONE) {
        std::fputs(body, stdout);
    } else {
        report_message(9, "%s", web_last_error());
    }
    std::free(header);
    std::free(body);
    return result == WEB_DONE ? 0 : 1;
}
