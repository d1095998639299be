#include "support/error/recorder.h"

#include <algorithm>
#include <cstring>
#include <ctime>

#include "support/error/bounded_text.h"
#include "support/error/internal.h"

corvella::recorder_state corvella::recorder = {0.0, 0};

namespace {

using corvella::recorder;

constexpr double burst_gap_seconds = 60.0;
constexpr std::size_t text_limit = 4056;
constexpr std::size_t record_size = 4096;
constexpr std::size_t time_length = 24;
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

/// The local time of a second, formed anew only when the second is another.
const char *local_time_text(std::time_t now)
{
    static std::time_t formed_for = 0;
    static char formed[64] = ""; // ctime needs 26 bytes, and for far years more on some systems
    if (formed[0] == '\0' || formed_for != now) {
        formed_for = now;
        if (ctime_r(&now, formed) == nullptr) {
            std::memcpy(formed, unknown_time, sizeof unknown_time);
        }
    }
    return formed;
}

} // namespace

int record_timestamped_line(const char *text)
{
    const std::time_t now = std::time(nullptr);
    count_line(now);

    char buffer[record_size];
    corvella::bounded_text record = {buffer, sizeof buffer - 1, 0};
    append_bytes(record, local_time_text(now), time_length);
    append_text(record, ": ");
    append_bytes(record, text,
                 std::min(corvella::length_without_trailing(text, "\r\n"), text_limit));
    append_text(record, "\n");
    end_text(record);
    return static_cast<int>(record.length) - 1;
}
