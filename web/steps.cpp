#include "web/steps.h"

namespace {

WebStepCallback step_callback = nullptr;
void *step_argument = nullptr;

} // namespace

void set_web_step_callback(WebStepCallback callback, void *argument)
{
    step_callback = callback;
    step_argument = argument;
}

void tell_step(WebStep step)
{
    if (step_callback != nullptr) {
        step_callback(step, step_argument);
    }
}
