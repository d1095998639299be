#include "web/transaction.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "web/client_state.h"
#include "web/connection.h"
#include "web/reply.h"
#include "web/result.h"
#include "web/send_request.h"
#include "web/wait.h"
#include "web/web_error.h"

namespace {

bool posts(const char *method)
{
    return std::strcmp(method, "POST") == 0;
}

} // namespace

int web_transaction(const char *scheme, const char *host, const char *target, std::uint16_t port,
                    const char *method, const char *extra_headers, std::string_view body,
                    char **header_out, char **body_out, const char *proxy_host,
                    std::uint16_t proxy_port, const char *user, const char *password)
{
    if (std::strcmp(scheme, "HTTP") != 0) {
        set_web_error("Protocol should be HTTP, not %s", scheme);
        return WEB_FAILED;
    }
    const std::string_view sent_body = posts(method) ? body : std::string_view();
    if (sent_body.size() > PTRDIFF_MAX) { // more than one send may be handed
        throw std::bad_alloc();
    }
    int socket = corvella::create_web_socket();
    if (socket < 0) {
        return WEB_FAILED;
    }
    // Closes on every way out, an exception of the idle callback's included.
    const std::unique_ptr<int, void (*)(int *)> closer(&socket, corvella::close_web_socket);

    const bool proxied = proxy_host != nullptr && proxy_host[0] != '\0';
    if (!corvella::connect_web_socket(socket, host, proxied ? proxy_host : host,
                                      proxied ? proxy_port : port)) {
        return WEB_FAILED;
    }
    const corvella::request_parts request = {host,      target, posts(method), extra_headers,
                                             sent_body, user,   password};
    corvella::request_progress progress = {socket};
    const int sent = corvella::report_wait_failure(corvella::send_request(request, progress));
    if (sent != WEB_DONE) {
        return sent;
    }
    corvella::notify_step(WEB_REQUEST_SENT);
    return corvella::receive_reply(progress, header_out, body_out);
}
