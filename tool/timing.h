/// \file
/// How long each step of an exchange took.
#pragma once

#include <vector>

#include "web/web.h"

namespace corvella {

struct step_time {
    const char *name;
    double seconds;
};

/// Forgets the steps of the exchange before. The first step begins at start_timer().
void begin_timing();

/// Notes that a step is done.
void note_step(WebStep step);

/// Notes that the body is complete, which no WebStep reports.
void note_body();

/// \return the steps that were done, in their order.
std::vector<step_time> step_times();

/// Notes the end of the exchange.
void end_timing();

/// \return the seconds from start_timer() to end_timing().
double exchange_seconds();

} // namespace corvella
