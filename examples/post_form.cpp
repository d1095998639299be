// Posts a form of two fields: post_form URL
#include <cstdio>
#include <cstdlib>

#include "support/error.h"
#include "web/web.h"

int main(int count, char **vector)
{
    if (count != 2) {
        print_indented("Usage: post_form URL\n");
        return 2;
    }
    const FormField fields[] = {{"product", "A B"}, {"v", "1.0"}};
    char *header = nullptr;
    char *body = nullptr;
    int result =
        web_request(vector[1], "POST", 2, fields, &header, &body, nullptr, 0, nullptr, nullptr);
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
