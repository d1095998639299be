/// \file
/// The web client: blocking HTTP/1.0 (RFC 1945) transactions, form posts and reply checks.
///
/// Nothing here prints: each operation returns a web_result as an int, and web_last_error() returns
/// the reason of a failure. All state is process-wide; one transaction runs at a time.
///
/// Strings are NUL-terminated bytes, and sizes count bytes. Except where documented otherwise, the
/// caller passes no null pointer, nothing that overlaps, and a destination with room for the
/// result.
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
