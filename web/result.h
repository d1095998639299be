/// \file
/// The results of every web operation. Internal to the web client: callers see the integers.
#pragma once

enum web_result {
    WEB_FAILED = -1,
    WEB_DONE = 0,
    WEB_TIMED_OUT = 1,
    WEB_CANCELLED = 2,
};
