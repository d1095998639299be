/// \file
/// The web client: blocking HTTP/1.0 (RFC 1945) transactions, form posts and reply checks.
///
/// Nothing here reports messages: each operation returns a web_result as an int and leaves the text
/// of its failure for web_last_error(). All state is process-wide; one transaction runs at a time.
///
/// Texts are NUL-terminated bytes, and sizes count bytes. The caller's duty, where it is not said
/// otherwise: no pointer is null, nothing overlaps, and a destination has room for the result.
#pragma once

#include "web/base64.h"
#include "web/form.h"
#include "web/proxy.h"
#include "web/reply_header.h"
#include "web/reply_status.h"
#include "web/request.h"
#include "web/result.h"
#include "web/transaction.h"
#include "web/update.h"
#include "web/web_error.h"
