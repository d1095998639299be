#include "tool/timing.h"

#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"

namespace {

struct piece {
    const char *name;
    float end; ///< seconds since start_timer()
};

std::vector<piece> pieces;

void note_step(WebStep step, void *)
{
    static const char *const names[] = {"address", "connection", "request", "header"};
    pieces.push_back({names[step], elapsed_time()});
}

} // namespace

void begin_timing()
{
    pieces.clear();
    set_web_step_callback(note_step, nullptr);
}

void end_timing(bool body_came)
{
    set_web_step_callback(nullptr, nullptr);
    if (body_came) {
        pieces.push_back({"body", elapsed_time()});
    }
    float begin = 0.0f;
    for (const piece &done : pieces) {
        print_indented("* %s: %.3f s\n", done.name, static_cast<double>(done.end - begin));
        begin = done.end;
    }
}
