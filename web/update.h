/// \file
/// The product update query.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Queries the maker's web service for a newer version of a product.
///
/// Posts the eight fields to "/version-update.php", checks the reply's status and reads the lines
/// "Name: value" of its body. A value ends in front of the line feed; a carriage return is part of
/// it. The message must come last and continues to the end of the body. On purpose: a value begins
/// two characters after the colon, regardless of the character between.
///
/// On purpose: web_last_error() is empty if the reply has no message.
///
/// \param product,productline,version_name,os,os_version,machine_id,processor_arch sent unchanged
/// \param version sent with three decimals, as printf's "%.3f" writes it
/// \param capacity the size of each destination in bytes, to which values are truncated; a capacity
///     below 1 writes nothing
/// \param message_out receives "Message"; must not be null
/// \param version_out,url_out,button_out receive "Version", "URL" and "Button"; each may be null,
///     and is unchanged if the reply does not have the value
/// \param proxy_host,proxy_port,user,password see web_transaction()
/// \return 0 if the reply has a message; the result of web_transaction() if the exchange fails; -1
/// if the status is not acceptable or there is no message.
/// \throws std::bad_alloc if memory is exhausted.
int query_product_update(const char *product, const char *productline, float version,
                         const char *version_name, const char *os, const char *os_version,
                         const char *machine_id, const char *processor_arch, int capacity,
                         char *message_out, char *version_out, char *url_out, char *button_out,
                         const char *proxy_host, std::uint16_t proxy_port, const char *user,
                         const char *password);

#pragma GCC visibility pop
