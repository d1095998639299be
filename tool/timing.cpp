#include "tool/timing.h"

#include "support/c-utils.h"

namespace corvella {

namespace {

struct finished_step {
    const char *name;
    float end; ///< seconds since start_timer()
};

std::vector<finished_step> finished_steps;
float end_of_exchange = 0.0f;

} // namespace

void begin_timing()
{
    finished_steps.clear();
}

void note_step(WebStep step)
{
    static const char *const names[] = {"address", "connection", "request", "header"};
    finished_steps.push_back({names[step], elapsed_time()});
}

void note_body()
{
    finished_steps.push_back({"body", elapsed_time()});
}

std::vector<step_time> step_times()
{
    std::vector<step_time> times;
    float begin = 0.0f;
    for (const finished_step &step : finished_steps) {
        times.push_back({step.name, static_cast<double>(step.end - begin)});
        begin = step.end;
    }
    return times;
}

void end_timing()
{
    end_of_exchange = elapsed_time();
}

double exchange_seconds()
{
    return static_cast<double>(end_of_exchange);
}

} // namespace corvella
