/// \file
/// A second account of the check of a reply's status line, by the C library's scanner.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>

inline std::string bad_status(const std::string &status_and_reason)
{
    const std::size_t blank = status_and_reason.find(' ');
    return "Bad HTTP status " + status_and_reason.substr(0, blank) +
           " from web site: " + status_and_reason.substr(blank + 1);
}

inline std::string unparsable(const std::string &remainder)
{
    return "Invalid HTTP return status (can't parse header HTTP/" + remainder + ")";
}

/// What the C library's scanner makes of the same words. Numbers are scanned as wide ones, so that
/// those outside 32 bits become the nearest one inside.
inline std::string scanned_verdict(const std::string &header)
{
    const char *const found = std::strstr(header.c_str(), "HTTP/");
    if (found == nullptr) {
        return "Invalid non-HTTP header string returned from web site";
    }
    const char *const remainder = found + 5;
    long long major = 0;
    long long minor = 0;
    long long status = 0;
    char reason[128] = "";
    if (std::sscanf(remainder, "%lld.%lld %lld %127[^\r\n]", &major, &minor, &status, reason) < 4) {
        return unparsable(remainder);
    }
    status = std::clamp<long long>(status, INT_MIN, INT_MAX);
    if (status < 200 || status > 299) {
        return bad_status(std::to_string(status) + " " + reason);
    }
    return "(accepted)";
}
