#include "support/error/recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "support/error/recorder_state.h"

namespace {

recorder_state recorder = {0.0, 0};

constexpr double burst_gap_seconds = 60.0;
constexpr std::size_t text_limit = 4056;
constexpr std::size_t record_size = 4096;
constexpr char unknown_time[] = "??? ??? ?? ??:??:?? ????"; // for a year that ctime cannot write

void count_line(std::time_t now)
{
    const double seconds = static_cast<double>(now);
    if (seconds - recorder.last_time > burst_gap_seconds) {
        recorder.burst_count = 0;
    }
    recorder.last_time = seconds;
    ++recorder.burst_count;
}

std::size_t length_without_line_end(const char *text)
{
    std::size_t length = std::strlen(text);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r')) {
        --length;
    }
    return length;
}

} // namespace

recorder_state &time_stamp_recorder()
{
    return recorder;
}

int record_timestamped_line(const char *text)
{
    const std::time_t now = std::time(nullptr);
    count_line(now);

    char time_buffer[26];
    const char *const local_time = ctime_r(&now, time_buffer);
    char record[record_size];
    const std::size_t kept = std::min(length_without_line_end(text), text_limit);
    const int length = std::snprintf(record, sizeof record, "%.24s: %.*s\n",
                                     local_time != nullptr ? local_time : unknown_time,
                                     static_cast<int>(kept), text);
    return length - 1;
}
