/// \file
/// One HTTP/1.0 exchange over its own TCP connection.
#pragma once

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <string_view>

#pragma GCC visibility push(default)

/// Called while a transaction waits, with the registered argument.
using WebIdleCallback = void (*)(void *argument);

/// The steps of a transaction, in this order. The last one, receiving the body, has no value: it
/// ends with the transaction.
enum WebStep {
    WEB_ADDRESS_FOUND,   ///< looked up the web server's name, or the proxy's
    WEB_CONNECTED,       ///< connected to either
    WEB_REQUEST_SENT,    ///< passed the request to the system; it may not have arrived
    WEB_HEADER_RECEIVED, ///< received the reply's header, or its part before a close or an error
};

/// Called after each step of a transaction, with the registered argument.
using WebStepCallback = void (*)(WebStep step, void *argument);

/// Called with a number of bytes of a body, and with the registered argument.
using WebProgressCallback = void (*)(std::size_t bytes, void *argument);

/// Non-zero stops the current transaction or the next one, which resets it to 0. A signal handler
/// may set it.
extern volatile std::sig_atomic_t web_cancel_requested;

/// Registers the idle callback, which runs while a transaction waits for the server.
///
/// It runs on the transaction's own thread: every 100 ms in which the system accepts nothing of the
/// request, or in which nothing arrives before or within the reply's header; after 10 s of silence
/// within the reply's body; and whenever a signal interrupts such a wait.
///
/// \param callback may throw, which closes the connection; null disables the calls
/// \param argument passed to \p callback
void set_web_idle_callback(WebIdleCallback callback, void *argument);

/// Registers the step callback, which runs once after each step that succeeds.
///
/// It runs on the transaction's own thread.
///
/// \param callback may throw, which closes the connection; null disables the calls
/// \param argument passed to \p callback
void set_web_step_callback(WebStepCallback callback, void *argument);

/// Registers the progress callback, which runs after each received chunk of a reply's body.
///
/// It runs on the transaction's own thread, with the number of bytes of the body received so far,
/// including those that a NUL discards. The number saturates at SIZE_MAX.
///
/// \param callback may throw, which closes the connection; null disables the calls
/// \param argument passed to \p callback
void set_web_progress_callback(WebProgressCallback callback, void *argument);

/// Registers the send callback, which runs while a request is sent and while the system still holds
/// a part of it.
///
/// It runs on the transaction's own thread, at most once every 100 ms, with the number of bytes of
/// the request's body that the peer has acknowledged so far, or, if the system cannot report that,
/// that the system has accepted. The number never decreases. A request that is delivered within
/// 100 ms gives no call.
///
/// \param callback may throw, which closes the connection; null disables the calls
/// \param argument passed to \p callback
void set_web_send_callback(WebProgressCallback callback, void *argument);

/// Runs one transaction: connects, sends the request, and reads the reply until the server closes.
///
/// The reply is not interpreted: no status, no Content-Length, no chunked coding. Only memory
/// limits its size. On purpose: within each received chunk of the body, of up to 1023 bytes, a NUL
/// byte discards the rest of the chunk.
///
/// Host, target and headers are sent unchanged. A caller that gets them from someone else must
/// refuse line ends and, in the target, blanks: they could forge parts of the request. Any other
/// byte may be in any string.
///
/// Looking up the name and connecting wait as long as the system does; meanwhile the cancel request
/// is not checked and the idle callback does not run.
///
/// A transaction times out if the server neither sends nor accepts anything for 10 s. The server
/// has accepted what its system has acknowledged of the request (SIOCOUTQ on Linux, SO_NWRITE on
/// Mac OS X; checked every 100 ms without progress). It may thus read as slowly as it likes, as
/// long as its system acknowledges something every 10 s; a system with a large receive buffer may
/// wait longer before it does. If the client's system cannot report acknowledgements, what it has
/// accepted counts instead. From the first byte of the reply on, only what the server sends counts.
/// If a signal interrupts the wait for the body, the time-out may take up to 20 s.
///
/// \param scheme must be "HTTP", in upper case
/// \param host the web server: connected to if there is no proxy, and sent as the Host header. On
///     purpose: the error texts name it even if the proxy failed.
/// \param target the request target, sent unchanged
/// \param port the web server's port; never part of the Host header
/// \param method exactly "POST" posts; anything else gets
/// \param extra_headers header lines without the last line end; may be null or empty
/// \param body sent after the header of a POST, including NUL bytes; ignored otherwise
/// \param header_out receives the reply's header, up to the empty line, whose carriage return is
///     kept and whose line feed is not. It is set as soon as the header is complete, or ended by a
///     close or an error, and stays set if the body then fails.
/// \param body_out receives the reply's body if the result is 0. Like \p header_out, the string is
///     released with free(). The caller sets both to null before the call and releases each that is
///     not null after it. If waiting for the header fails, neither is set; a peer that closes
///     without sending a byte gives two empty strings.
/// \param proxy_host the HTTP proxy to connect to; null or empty for a direct connection
/// \param proxy_port the proxy's port
/// \param user,password sent as Basic credentials (RFC 7617) in an Authorization header if both are
///     not null; empty ones count. On purpose: the header is the same through a proxy, so that both
///     the proxy and the web server see it.
/// \return a web_result: 0 done, -1 failed, 1 timed out, 2 cancelled. If it is not 0,
/// web_last_error() has the reason; success does not clear an earlier error text.
/// \throws std::bad_alloc if memory is exhausted. If \p body has more than PTRDIFF_MAX bytes (2 GiB
/// less 1 on a 32-bit system), std::bad_alloc is thrown before anything is sent.
int web_transaction(const char *scheme, const char *host, const char *target, std::uint16_t port,
                    const char *method, const char *extra_headers, std::string_view body,
                    char **header_out, char **body_out, const char *proxy_host,
                    std::uint16_t proxy_port, const char *user, const char *password);

#pragma GCC visibility pop
