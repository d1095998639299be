#include "web/request_lines.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <sys/socket.h>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/base64.h"
#include "web/socket_sends.h"
#include "web/transaction.h"
#include "web/wait.h"

namespace {

// The greatest number of bytes whose base64 length and NUL an int can count.
constexpr std::size_t greatest_encodable = 1610612733;

/// A text that is wiped before it is given back.
using secret_text = std::unique_ptr<char, void (*)(char *)>;

void wipe_and_free(char *text)
{
    for (volatile char *c = text; *c != '\0'; ++c) {
        *c = '\0';
    }
    checked_free(text);
}

/// Whether a send that was interrupted is tried again: not when the user wants to stop, nor when
/// signals keep it from any progress for as long as a silent peer is given.
bool goes_on_after_signal(std::uint32_t &deadline, bool &interrupted)
{
    if (!interrupted) {
        interrupted = true;
        deadline = silence_deadline();
    }
    return web_cancel_requested == 0 && !deadline_passed(deadline);
}

void send_text(int socket, std::string_view text, bool more)
{
    bool interrupted = false;
    std::uint32_t deadline = 0;
    while (!text.empty()) {
        const ssize_t sent = send_piece(socket, text.data(), text.size(), more);
        if (sent >= 0) {
            text.remove_prefix(static_cast<std::size_t>(sent));
            interrupted = false;
        } else if (errno != EINTR || !goes_on_after_signal(deadline, interrupted)) {
            shutdown(socket, SHUT_WR); // or the pieces behind would make another request of it
            return;
        }
    }
}

void send_credentials(int socket, const char *user, const char *password)
{
    const std::size_t user_length = std::strlen(user);
    const std::size_t password_length = std::strlen(password);
    if (user_length >= greatest_encodable || password_length >= greatest_encodable - user_length) {
        throw std::bad_alloc();
    }
    const std::size_t length = user_length + 1 + password_length;
    const secret_text plain(static_cast<char *>(checked_malloc(length + 2)), wipe_and_free);
    std::snprintf(plain.get(), length + 2, "%s:%s\n", user, password);

    const int count = static_cast<int>(length); // the line end is no part of the credentials
    const std::size_t encoded_size = static_cast<std::size_t>(base64_encoded_length(count)) + 1;
    const secret_text encoded(static_cast<char *>(checked_malloc(encoded_size)), wipe_and_free);
    send_text(socket, base64_encode(plain.get(), count, encoded.get()), true);
}

} // namespace

void send_request(int socket, const web_message &message)
{
    const bool posts = std::strcmp(message.method, "POST") == 0;
    const std::string_view body = posts ? message.body : std::string_view();

    send_text(socket, posts ? "POST " : "GET ", true);
    send_text(socket, message.target, true);
    send_text(socket, " HTTP/1.0\r\n", true);
    send_text(socket, "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n", true);
    send_text(socket, "Accept-Language: en-us\r\n", true);
    send_text(socket, "User-Agent: Morvane_Auto1\r\n", true);
    send_text(socket, "Referer: www." CORVELLA_MAKER_DOMAIN "\r\n", true);
    if (message.extra_headers != nullptr && message.extra_headers[0] != '\0') {
        send_text(socket, message.extra_headers, true);
        send_text(socket, "\r\n", true);
    }
    send_text(socket, "Host: ", true);
    send_text(socket, message.host, true);
    send_text(socket, "\r\n", true);
    if (message.user != nullptr && message.password != nullptr) {
        send_text(socket, "Authorization: Basic ", true);
        send_credentials(socket, message.user, message.password);
        send_text(socket, "\r\n", true);
    }
    send_text(socket, "\r\n", !body.empty());
    send_text(socket, body, false);
}
