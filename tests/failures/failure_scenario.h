/// \file
/// A call of the product with each call of the system failing in it, one after the other.
#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "tests/harness/capture.h"
#include "tests/harness/failing_calls.h"

/// One call of the product, and how it is to end.
struct FailureScenario {
    const char *name;
    /// The published functions that its call runs, one within another too.
    std::vector<std::string> runs;
    std::vector<Call> reaches; ///< the fallible calls that it makes when nothing fails, all of them
    void (*prepare)();         ///< may be null
    void (*call)();            ///< the product's call, and nothing else that allocates
    /// What came of it, as a text; gives back what the call has given. It is asked also after an
    /// exception, which stands in front of its text then.
    std::string (*outcome)();
    std::string success; ///< the outcome, what was written behind it, when nothing fails
    /// The same for a failure.
    std::string (*expected)(const Failure &failure);
    bool writes = false; ///< whether standard output and standard error are of interest
};

void PrintTo(Call call, std::ostream *out);
void PrintTo(const FailureScenario &scenario, std::ostream *out);

std::vector<FailureScenario> error_scenarios();
std::vector<FailureScenario> c_utils_scenarios();
std::vector<FailureScenario> file_scenarios();
std::vector<FailureScenario> option_scenarios();
std::vector<FailureScenario> transaction_scenarios();
std::vector<FailureScenario> reply_text_scenarios();
std::vector<FailureScenario> update_scenarios();
std::vector<FailureScenario> all_scenarios();

/// Which calls the scenario makes when nothing fails.
std::vector<Call> calls_reached(const FailureScenario &scenario);

/// Runs the scenario with every call of \p call failing in turn, with each errno that it documents,
/// once failing a single time, once from then on for ever, until a run meets no failure. Each run
/// must end as expected, hold nothing, and leave all in a state in which the next run, without a
/// failure, succeeds.
/// \return how many runs met a failure; 0 after a failed expectation.
int fail_each(const FailureScenario &scenario, Call call);

/// The same with all calls in one count, from each on for ever; only what holds for every scenario
/// is expected then: nothing is held, and the next run succeeds.
int fail_all_from_each(const FailureScenario &scenario);
