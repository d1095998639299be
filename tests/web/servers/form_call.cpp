#include "tests/web/servers/form_call.h"

#include <cstdlib>

#include "web/web.h"

namespace {

std::optional<std::string> taken(char *text)
{
    if (text == nullptr) {
        return std::nullopt;
    }
    std::string copy(text);
    std::free(text);
    return copy;
}

WebOutcome request(const std::string &url, const char *method, const FormFields &fields,
                   const WebCall &call)
{
    std::vector<FormField> pointers;
    for (const auto &[name, value] : fields) {
        pointers.push_back({name.c_str(), value.c_str()});
    }
    char *header = nullptr;
    char *body = nullptr;
    const int result =
        web_request(url.c_str(), method, static_cast<int>(pointers.size()), pointers.data(),
                    &header, &body, call.proxy_host, call.proxy_port, call.user, call.password);
    return {result, taken(header), taken(body), web_last_error()};
}

} // namespace

WebOutcome post_form(const std::string &url, const FormFields &fields, const WebCall &call)
{
    return request(url, "POST", fields, call);
}

WebOutcome get_page(const std::string &url, const WebCall &call)
{
    return request(url, "GET", {}, call);
}

std::string status_complaint(const WebOutcome &outcome)
{
    if (!outcome.header) {
        return "(no header)";
    }
    return check_reply_status(outcome.header->c_str()) == 0 ? "" : web_last_error();
}
