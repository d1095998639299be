#include "web/request_progress.h"

#include <algorithm>

#include "web/client_state.h"
#include "web/socket_sends.h"

namespace corvella {
namespace {

constexpr std::uint32_t report_interval_ms = 100;

void report(request_progress &request, std::uint32_t now)
{
    if (now - request.reported_at < report_interval_ms) {
        return;
    }
    request.reported_at = now;
    const std::uint64_t start = std::min(request.body_start, request.taken);
    notify_sent(static_cast<std::size_t>(request.taken - start));
}

bool check(request_progress &request, std::uint64_t unsent, std::uint32_t now)
{
    const std::uint64_t taken = request.accepted - std::min(unsent, request.accepted);
    const bool took_more = request.checked && taken > request.taken;
    request.taken = std::max(request.taken, taken);
    request.checked_at = now;
    if (request.checked) {
        report(request, now);
    } else {
        request.checked = true;
        request.reported_at = now;
    }
    return took_more;
}

} // namespace

bool check_request_progress(request_progress &request, std::uint32_t now)
{
    const std::int64_t unsent = unsent_bytes(request.socket);
    return check(request, unsent > 0 ? static_cast<std::uint64_t>(unsent) : 0, now);
}

bool check_remaining_request(request_progress &request, std::uint32_t now)
{
    if (request.settled) {
        return false;
    }
    const std::int64_t unsent = unsent_bytes(request.socket);
    request.settled = unsent <= 0;
    return unsent >= 0 && check(request, static_cast<std::uint64_t>(unsent), now);
}

} // namespace corvella
