#include "web/reply_status.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "support/c-utils.h"
#include "support/c-utils/characters.h"
#include "support/c-utils/decimal.h"
#include "web/result.h"
#include "web/web_error.h"

namespace {

constexpr std::int32_t first_good_status = 200;
constexpr std::int32_t last_good_status = 299;

struct status_line {
    std::int32_t code;
    char reason[128];
};

/// Reads "major.minor code reason" as scanf reads "%d.%d %d %[^\r\n]": white space may stand before
/// each number, and any of it, line ends too, before the reason.
bool read_status_line(const char *cursor, status_line &status)
{
    std::int32_t version;
    if (!corvella::scan_decimal(cursor, version) || *cursor != '.') {
        return false;
    }
    ++cursor;
    if (!corvella::scan_decimal(cursor, version) || !corvella::scan_decimal(cursor, status.code)) {
        return false;
    }
    cursor = corvella::skip_white_space(cursor);
    const std::size_t length = std::strcspn(cursor, "\r\n");
    copy_string_bounded(status.reason, cursor, std::min(length + 1, sizeof status.reason));
    return length > 0;
}

} // namespace

int check_reply_status(const char *header)
{
    const char *const protocol = std::strstr(header != nullptr ? header : "", "HTTP/");
    if (protocol == nullptr) {
        set_web_error("Invalid non-HTTP header string returned from web site");
        return WEB_FAILED;
    }
    const char *const text = protocol + std::strlen("HTTP/");
    status_line status;
    if (!read_status_line(text, status)) {
        set_web_error("Invalid HTTP return status (can't parse header HTTP/%s)", text);
        return WEB_FAILED;
    }
    if (status.code < first_good_status || status.code > last_good_status) {
        set_web_error("Bad HTTP status %d from web site: %s", status.code, status.reason);
        return WEB_FAILED;
    }
    return WEB_DONE;
}
