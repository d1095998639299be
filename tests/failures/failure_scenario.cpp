#include "tests/failures/failure_scenario.h"

#include <new>

#include "support/error.h"
#include "tests/web/web_call.h"
#include "web/client_state.h"

namespace {

constexpr int most_runs = 100000;

/// \return what was thrown, or "".
std::string run_watched(const FailureScenario &scenario, const Failure &failure)
{
    try {
        const WatchedCalls watched(failure);
        scenario.call();
    } catch (const std::bad_alloc &) {
        return "std::bad_alloc ";
    } catch (const CorvellaAbortException &abort) {
        return "abort " + std::to_string(abort.code) + " " + abort.file + " " +
               std::to_string(abort.line) + " ";
    }
    return "";
}

std::string outcome_of(const FailureScenario &scenario, const Failure &failure)
{
    if (scenario.prepare != nullptr) {
        scenario.prepare();
    }
    ++failing_calls.now; // the time's text is formed anew each second only
    std::string thrown;
    CapturedOutput written;
    if (scenario.writes) {
        written = capture_output([&] { thrown = run_watched(scenario, failure); });
    } else {
        thrown = run_watched(scenario, failure);
    }
    return thrown + scenario.outcome() + written.out + written.err;
}

std::string description(const Failure &failure)
{
    return name_of(failure.call) + " number " + std::to_string(failure.number) + " fails with " +
           std::to_string(failure.error) + (failure.for_ever() ? " for ever" : " once");
}

/// \return whether nothing is left of a run.
bool nothing_is_held(std::size_t descriptors_before)
{
    corvella::clear_web_error(); // which is kept on purpose
    EXPECT_EQ(things_held(), 0u) << "blocks, streams or directories are left";
    EXPECT_EQ(open_descriptor_count(), descriptors_before) << "descriptors are left";
    return !testing::Test::HasFailure();
}

/// \return whether the run without a failure succeeds.
bool succeeds(const FailureScenario &scenario)
{
    EXPECT_EQ(outcome_of(scenario, {}), scenario.success);
    corvella::clear_web_error();
    return !testing::Test::HasFailure();
}

/// Runs with failure number 1, 2, 3, ... of the kind. \return how many there were.
int fail_in_turn(const FailureScenario &scenario, Failure failure)
{
    for (failure.number = 1; failure.number < most_runs; ++failure.number) {
        SCOPED_TRACE(description(failure));
        const std::size_t descriptors = open_descriptor_count();
        const std::string outcome = outcome_of(scenario, failure);
        const bool failed = calls_seen().failed > 0;
        if (!failed || !failure.of_every_call) {
            EXPECT_EQ(outcome, failed ? scenario.expected(failure) : scenario.success);
        }
        if (!nothing_is_held(descriptors) || (failed && !succeeds(scenario))) {
            return 0;
        }
        if (!failed) {
            return failure.number - 1;
        }
    }
    ADD_FAILURE() << "the failures have no end";
    return 0;
}

} // namespace

void PrintTo(Call call, std::ostream *out)
{
    *out << name_of(call);
}

void PrintTo(const FailureScenario &scenario, std::ostream *out)
{
    *out << scenario.name;
}

std::vector<FailureScenario> all_scenarios()
{
    std::vector<FailureScenario> all;
    for (const auto &scenarios :
         {error_scenarios(), c_utils_scenarios(), file_scenarios(), option_scenarios(),
          transaction_scenarios(), reply_text_scenarios(), update_scenarios()}) {
        all.insert(all.end(), scenarios.begin(), scenarios.end());
    }
    return all;
}

std::vector<Call> calls_reached(const FailureScenario &scenario)
{
    EXPECT_EQ(outcome_of(scenario, {}), scenario.success);
    std::vector<Call> calls;
    for (const FallibleCall &row : fallible_calls()) {
        if (calls_seen().of(row.call) > 0) {
            calls.push_back(row.call);
        }
    }
    return calls;
}

int fail_each(const FailureScenario &scenario, Call call)
{
    int runs = 0;
    for (const int error : fallible(call).errors) {
        for (const Failure::How how : {Failure::Once, Failure::FromThenOn}) {
            const int failed = fail_in_turn(scenario, {how, call, error});
            if (failed == 0) {
                return 0;
            }
            runs += failed;
        }
    }
    return runs;
}

int fail_all_from_each(const FailureScenario &scenario)
{
    Failure failure = {Failure::FromThenOn};
    failure.of_every_call = true;
    return fail_in_turn(scenario, failure);
}
