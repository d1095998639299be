/// \file
/// The product update query.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Asks the maker's web service whether there is a newer version of a product: posts the eight
/// fields to "/version-update.php", checks the reply's status and reads the lines "Name: value" of
/// its body. A value begins two characters behind the colon, deliberately whatever the one between
/// is, and ends before the line feed (a carriage return is part of it); the message, which must
/// come last, runs to the end of the body.
///
/// \param product,productline,version_name,os,os_version,machine_id,processor_arch sent as they
///     are; none may be null
/// \param version sent with three decimals, as printf's "%.3f" writes it
/// \param capacity the size of each destination, the NUL included; a longer value is cut. A
///     capacity below 1 writes nothing.
/// \param message_out receives "Message"; must not be null
/// \param version_out,url_out,button_out receive "Version", "URL" and "Button" when they are not
///     null; what the reply does not have is left as it was
/// \param proxy_host,proxy_port,user,password see web_transaction()
///
/// \return 0 when the reply has a message; what web_transaction() returned when the exchange
/// failed; -1 when the status is not acceptable or there is no message. In the last case
/// web_last_error() is empty, deliberately. \throws std::bad_alloc when memory is exhausted.
int query_product_update(const char *product, const char *productline, float version,
                         const char *version_name, const char *os, const char *os_version,
                         const char *machine_id, const char *processor_arch, int capacity,
                         char *message_out, char *version_out, char *url_out, char *button_out,
                         const char *proxy_host, std::uint16_t proxy_port, const char *user,
                         const char *password);

#pragma GCC visibility pop
