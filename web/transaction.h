/// \file
/// One HTTP/1.0 exchange over a TCP connection of its own.
#pragma once

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <string_view>

#pragma GCC visibility push(default)

/// Called while a transaction waits, with the argument that was registered.
using WebIdleCallback = void (*)(void *argument);

/// What a transaction has done, in this order. What it does last, receiving the body, ends with it.
enum WebStep {
    WEB_ADDRESS_FOUND,   ///< looked up the web server's name, or the proxy's
    WEB_CONNECTED,       ///< connected to either
    WEB_REQUEST_SENT,    ///< handed the request to the system; what arrives of it is not known
    WEB_HEADER_RECEIVED, ///< received the reply's header, or all there was before a close or an
                         ///< error
};

/// Called after each step of a transaction, with the argument that was registered.
using WebStepCallback = void (*)(WebStep step, void *argument);

/// Called with a number of bytes of a body, and with the argument that was registered.
using WebProgressCallback = void (*)(std::size_t bytes, void *argument);

/// Set it to non-zero, from a signal handler if need be, to stop the transaction that runs or the
/// next one. The transaction that stops sets it back to 0.
extern volatile std::sig_atomic_t web_cancel_requested;

/// Registers the idle callback; null switches the calls off. The callback runs on the transaction's
/// own thread while the transaction waits for the server: every 100 ms in which the system accepts
/// nothing of the request or nothing arrives before or within the reply's header, after 10 s of
/// silence within its body, and whenever a signal interrupts such a wait. It may throw; the
/// connection is closed then too.
void set_web_idle_callback(WebIdleCallback callback, void *argument);

/// Registers the step callback; null switches the calls off. The callback runs on the transaction's
/// own thread, once for each step that succeeded. It may throw; the connection is closed then too.
void set_web_step_callback(WebStepCallback callback, void *argument);

/// Registers the progress callback; null switches the calls off. The callback runs on the
/// transaction's own thread after each received chunk of a reply's body, with the number of bytes
/// of the body received so far, including those that a NUL discards; the number saturates at
/// SIZE_MAX. It may throw; the connection is closed then too.
void set_web_progress_callback(WebProgressCallback callback, void *argument);

/// Registers the send callback; null switches the calls off. The callback runs on the transaction's
/// own thread while a request is sent and while the system still holds some of it, at most once
/// every 100 ms, with the number of bytes of the request's body that the peer has taken so far, or,
/// where the system cannot tell, that the system has. The number never decreases. A request that is
/// taken within 100 ms gives no call. It may throw; the connection is closed then too.
void set_web_send_callback(WebProgressCallback callback, void *argument);

/// Runs one transaction: connects, sends the request, reads the reply until the server closes.
///
/// The reply is not interpreted: no status, no Content-Length, no chunked coding. Its only limit is
/// memory. Within each chunk of up to 1023 bytes in which the body is received, bytes from a NUL on
/// are dropped, deliberately.
///
/// \param scheme must be "HTTP", in upper case
/// \param host the web server: connected to when there is no proxy, sent as the Host header, and
///     named by the error texts, deliberately also when it was the proxy that failed
/// \param target the request target, sent as it stands
/// \param port the web server's port; never part of the Host header
/// \param method exactly "POST" posts; anything else gets
/// \param extra_headers header lines without the last line end; null or empty for none
/// \param body sent behind the header of a POST, NUL bytes included; ignored otherwise
/// \param header_out receives the reply's header as soon as it is complete, or broken off by a
/// close
///     or an error, even when the body then fails: all up to the empty line, whose carriage return
///     is kept and whose line feed is not
/// \param body_out receives the reply's body when the result is 0
/// \param proxy_host the HTTP proxy to connect to; null or empty for a direct connection
/// \param proxy_port the proxy's port
/// \param user,password sent as Basic credentials (RFC 7617) in an Authorization header when both
///     are not null; empty ones count. Through a proxy the header is the same, deliberately, so
///     that the proxy and the web server both see it.
///
/// Host, target and headers are sent as they are: a caller that takes them from somebody else must
/// refuse line ends and, in the target, blanks, or they could forge parts of the request.
///
/// But for \p extra_headers, \p proxy_host, \p user and \p password no text may be null, nor may
/// the places for the reply; any byte may stand in any text.
///
/// Both texts are blocks of the system allocator, given back with free(); the caller sets both to
/// null before and releases what is not null after.
///
/// Looking the name up and connecting wait as long as the system does, and look neither at the
/// cancel request nor at the idle callback. Where a wait within the header was in vain, neither
/// text is touched, whatever had come; a peer that closes without a byte gives two empty ones.
///
/// A server is given up when it neither sent nor took anything for 10 s. It has taken what its
/// system has acknowledged of the request (SIOCOUTQ on Linux, SO_NWRITE on Mac OS X; checked every
/// 100 ms without news). A server may thus read as slowly as it likes, as long as its system
/// acknowledges something every 10 s; a system with a large receive buffer may wait longer before
/// it does. Where the system cannot tell, the server has taken what the system has accepted. From
/// the first byte of the reply on, only what the server sends counts. If a signal interrupts the
/// wait for the body, the server may be given up only after up to 20 s.
///
/// \return a web_result: 0 done; -1 failed; 1 given up as above; 2 cancelled. When it is not 0,
/// web_last_error() has the reason. An earlier error text is not cleared by success. \throws
/// std::bad_alloc when memory is exhausted, or before anything is sent if \p body has more than
/// PTRDIFF_MAX bytes (2 GiB less 1 on a 32-bit system).
int web_transaction(const char *scheme, const char *host, const char *target, std::uint16_t port,
                    const char *method, const char *extra_headers, std::string_view body,
                    char **header_out, char **body_out, const char *proxy_host,
                    std::uint16_t proxy_port, const char *user, const char *password);

#pragma GCC visibility pop
