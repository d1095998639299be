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

const char *name_of(WebStep step)
{
    switch (step) {
    case WEB_ADDRESS_FOUND:
        return "address";
    case WEB_CONNECTED:
        return "connection";
    case WEB_REQUEST_SENT:
        return "request";
    case WEB_HEADER_RECEIVED:
        break;
    }
    return "header";
}

void note_step(WebStep step, void *)
{
    pieces.push_back({name_of(step), elapsed_time()});
}

} // namespace

void begin_timing()
{
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
