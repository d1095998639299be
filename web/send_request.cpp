#include "web/send_request.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <sys/socket.h>

#include "support/c-utils/wipe.h"
#include "support/error.h"
#include "web/base64.h"
#include "web/request_lines.h"
#include "web/socket_sends.h"
#include "web/transaction.h"

namespace corvella {
namespace {

// The greatest number of bytes whose base64 length and NUL an int can count.
constexpr std::size_t greatest_encodable = std::size_t{INT32_MAX} / 4 * 3;

/// A text that is wiped before it is given back.
using secret_text = std::unique_ptr<char, void (*)(char *)>;

void wipe_and_free(char *text)
{
    corvella::wipe(text, std::strlen(text));
    checked_free(text);
}

/// The sending of one request.
struct request_sender {
    request_progress &progress;
    wait_result result; ///< ready until the peer is given up
};

/// \param more whether other pieces follow at once
void send_text(request_sender &sender, std::string_view text, bool more)
{
    request_progress &progress = sender.progress;
    while (!text.empty() && sender.result == wait_result::ready) {
        const ssize_t sent = send_piece(progress.socket, text.data(), text.size(), more);
        if (sent >= 0) {
            progress.accepted += static_cast<std::uint64_t>(sent);
            text.remove_prefix(static_cast<std::size_t>(sent));
        } else if (errno != EINTR && errno != EAGAIN) { // EAGAIN: the slice is over
            if (progress.send_error == 0) {
                progress.send_error = errno;
            }
            shutdown(progress.socket, SHUT_WR); // or the pieces after it made another request
            return;
        }
        if (!text.empty()) {
            sender.result = continue_sending(progress, sent > 0);
        }
    }
}

void send_credentials(request_sender &sender, const char *user, const char *password)
{
    const std::size_t user_length = std::strlen(user);
    const std::size_t password_length = std::strlen(password);
    if (user_length >= greatest_encodable || password_length >= greatest_encodable - user_length) {
        throw std::bad_alloc();
    }
    const std::size_t length = user_length + 1 + password_length;
    const secret_text plain(static_cast<char *>(checked_malloc(length + 1)), wipe_and_free);
    std::memcpy(plain.get(), user, user_length);
    plain.get()[user_length] = ':';
    std::memcpy(plain.get() + user_length + 1, password, password_length + 1);

    const int count = static_cast<int>(length);
    const std::size_t encoded_size = static_cast<std::size_t>(base64_encoded_length(count)) + 1;
    const secret_text encoded(static_cast<char *>(checked_malloc(encoded_size)), wipe_and_free);
    send_text(sender, base64_encode(plain.get(), count, encoded.get()), true);
}

} // namespace

wait_result send_request(const request_parts &request, request_progress &progress)
{
    request_sender sender = {progress, wait_result::ready};
    send_text(sender, request.posts ? "POST " : "GET ", true);
    send_text(sender, request.target, true);
    send_text(sender, " HTTP/1.0\r\n", true);
    for (const std::string_view line : fixed_request_lines) {
        send_text(sender, line, true);
    }
    if (request.extra_headers != nullptr && request.extra_headers[0] != '\0') {
        send_text(sender, request.extra_headers, true);
        send_text(sender, "\r\n", true);
    }
    send_text(sender, "Host: ", true);
    send_text(sender, request.host, true);
    send_text(sender, "\r\n", true);
    if (request.user != nullptr && request.password != nullptr) {
        send_text(sender, "Authorization: Basic ", true);
        send_credentials(sender, request.user, request.password);
        send_text(sender, "\r\n", true);
    }
    send_text(sender, "\r\n", !request.body.empty());
    progress.body_start = progress.accepted;
    send_text(sender, request.body, false);
    return sender.result;
}

} // namespace corvella
