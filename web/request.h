/// \file
/// Requests that send a form, or a body of the caller's, to a URL.
#pragma once

#include <cstdint>
#include <string_view>

#include "web/form.h"

#pragma GCC visibility push(default)

/// Sends a form to a URL, with POST or GET.
///
/// Clears the last error text, splits the URL, builds the form's body and runs web_transaction().
/// On purpose: a GET sends the form's header lines too, although it sends no body.
///
/// The URL is split after toupper (ISO C), in the locale of the process, has changed it to upper
/// case. The scheme is everything in front of the first ":", or "HTTP" if there is no ":". The host
/// is the longest run of ASCII letters, digits, "-", "." and ":" after an optional "//", truncated
/// at its first ":". The port is the decimal number after that ":", saturated to 32 bits and then
/// truncated to 16; 0 if there is no number, and 80 if there is no ":". The request target is the
/// whole URL, unchanged.
///
/// In a locale whose toupper maps "i" to another letter, the host ends in front of its first "i".
/// With glibc that is so in tr_TR.ISO-8859-9, where "i" becomes the byte 0xDD; in tr_TR.UTF-8 it
/// stays "i", and the host is complete.
///
/// \param url a URL of any length; check one from someone else as web_transaction() describes
/// \param method see web_transaction()
/// \param field_count the number of fields
/// \param fields the form's fields; may be null if \p field_count is below 1
/// \param header_out,body_out see web_transaction(); released with free()
/// \param proxy_host,proxy_port,user,password see web_transaction()
/// \return the result of web_transaction().
/// \throws std::bad_alloc if memory is exhausted.
int web_request(const char *url, const char *method, int field_count, const FormField *fields,
                char **header_out, char **body_out, const char *proxy_host,
                std::uint16_t proxy_port, const char *user, const char *password);

/// Posts a body of the caller's to a URL.
///
/// Clears the last error text, splits the URL as web_request() does, and runs web_transaction()
/// with the header lines "Content-Type: " and "Content-Length: ".
///
/// \param url see web_request()
/// \param content_type the value of Content-Type, sent unchanged; must not contain line ends
/// \param body sent whole, including NUL bytes; its size is the value of Content-Length
/// \param header_out,body_out see web_transaction(); released with free()
/// \param proxy_host,proxy_port,user,password see web_transaction()
/// \return the result of web_transaction().
/// \throws std::bad_alloc as web_transaction() does.
int web_post(const char *url, const char *content_type, std::string_view body, char **header_out,
             char **body_out, const char *proxy_host, std::uint16_t proxy_port, const char *user,
             const char *password);

#pragma GCC visibility pop
