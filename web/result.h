/// \file
/// What the int of every web operation means.
#pragma once

/// The result of a web operation. When it is not WEB_DONE, web_last_error() has the reason.
enum web_result {
    WEB_FAILED = -1,   ///< the exchange failed, or a check refused the reply
    WEB_DONE = 0,      ///< success
    WEB_TIMED_OUT = 1, ///< the server made no progress for 10 s
    WEB_CANCELLED = 2, ///< cancelled by web_cancel_requested
};
