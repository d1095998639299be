#include "web/reply.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <sys/socket.h>

#include "web/client_state.h"
#include "web/reply_text.h"
#include "web/result.h"
#include "web/wait.h"
#include "web/web_error.h"

namespace corvella {
namespace {

// Deliberately the waits differ: within the header the user can stop the transaction ten times a
// second, within the body only after a whole silent wait.
constexpr timeval body_slice = {SILENCE_LIMIT_SECONDS, 0};

constexpr std::size_t chunk_size = 1023;

bool was_interrupted(ssize_t received)
{
    return received < 0 && (errno == EAGAIN || errno == EINTR);
}

/// Receives one byte. An interruption is tried again at once, but not beyond the time that a silent
/// peer is given.
ssize_t receive_byte(int socket, char &byte)
{
    ssize_t received = recv(socket, &byte, 1, 0);
    if (was_interrupted(received)) {
        const std::uint32_t deadline = silence_deadline();
        do {
            received = recv(socket, &byte, 1, 0);
        } while (was_interrupted(received) && !deadline_passed(deadline));
    }
    return received;
}

void set_receive_error()
{
    set_web_error("Error receiving data from web site: %s", system_error_text());
}

/// Adds one byte to the header, or finds that it ends the header and is no part of it.
/// \param line_is_empty whether the line so far has no bytes but carriage returns
/// \return whether the header goes on
bool append_header_byte(reply_text &header, bool &line_is_empty, char byte)
{
    if (byte == '\n') {
        // Deliberate: a line feed as the very first byte is content.
        if (line_is_empty && header.length > 0) {
            return false;
        }
        line_is_empty = true;
    } else if (byte != '\r') {
        line_is_empty = false;
    }
    *reserve_reply_text(header, 1) = byte;
    ++header.length;
    return true;
}

/// Sets the error text if the header ended in an error. A failed send may have consumed the error
/// that tells a reset from an orderly close.
void report_header_end(ssize_t received, const request_progress &request, const reply_text &header)
{
    if (received == 0 && header.length == 0 && request.send_error != 0) {
        errno = request.send_error;
        set_receive_error();
    } else if (received < 0) {
        set_receive_error();
    }
}

/// A receive error ends the header but not the transaction, deliberately: what follows decides.
int receive_header(request_progress &request, reply_text &header)
{
    const int socket = request.socket;
    request_progress *unanswered = &request;
    bool line_is_empty = true;
    char byte;
    do {
        const int waited = report_wait_failure(wait_readable(socket, short_slice, unanswered));
        if (waited != WEB_DONE) {
            return waited;
        }
        const ssize_t received = receive_byte(socket, byte);
        if (was_interrupted(received)) {
            return report_wait_failure(wait_result::timed_out);
        }
        if (received <= 0) {
            report_header_end(received, request, header);
            return WEB_DONE;
        }
        unanswered = nullptr;
    } while (append_header_byte(header, line_is_empty, byte));
    return WEB_DONE;
}

int receive_body(int socket, reply_text &body)
{
    std::size_t total = 0;
    for (;;) {
        const int waited = report_wait_failure(wait_readable(socket, body_slice, nullptr));
        if (waited != WEB_DONE) {
            return waited;
        }
        char *const chunk = reserve_reply_text(body, chunk_size);
        const ssize_t received = recv(socket, chunk, chunk_size, 0);
        if (received == 0 || was_interrupted(received)) {
            return WEB_DONE;
        }
        if (received < 0) {
            set_receive_error();
            return WEB_FAILED;
        }
        // Deliberate: a NUL costs the rest of its chunk.
        chunk[received] = '\0';
        body.length += std::strlen(chunk);
        // Saturates: bytes that a NUL discards take no memory.
        total += std::min(static_cast<std::size_t>(received), SIZE_MAX - total);
        notify_received(total);
    }
}

} // namespace

int receive_reply(request_progress &request, char **header_out, char **body_out)
{
    reply_text header = make_reply_text();
    int result = receive_header(request, header);
    if (result != WEB_DONE) {
        return result;
    }
    *header_out = release_reply_text(header);
    notify_step(WEB_HEADER_RECEIVED);

    reply_text body = make_reply_text();
    result = receive_body(request.socket, body);
    if (result == WEB_DONE) {
        *body_out = release_reply_text(body);
    }
    return result;
}

} // namespace corvella
