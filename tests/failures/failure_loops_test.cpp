// Every scenario with every call failing in turn.
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"
#include "tests/harness/valgrind.h"

namespace {

class FailureLoops : public testing::TestWithParam<FailureScenario> {
protected:
    void SetUp() override
    {
        const std::vector<Call> &reaches = GetParam().reaches;
        const bool needs_new =
            std::find(reaches.begin(), reaches.end(), Call::New) != reaches.end();
        if (runs_under_valgrind() && needs_new) {
            GTEST_SKIP() << "valgrind takes the place of operator new";
        }
    }
};

std::string name_of_scenario(const testing::TestParamInfo<FailureScenario> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Error, FailureLoops, testing::ValuesIn(error_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(CUtils, FailureLoops, testing::ValuesIn(c_utils_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(Files, FailureLoops, testing::ValuesIn(file_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(Options, FailureLoops, testing::ValuesIn(option_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(Transaction, FailureLoops, testing::ValuesIn(transaction_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(ReplyText, FailureLoops, testing::ValuesIn(reply_text_scenarios()),
                         name_of_scenario);
INSTANTIATE_TEST_SUITE_P(Update, FailureLoops, testing::ValuesIn(update_scenarios()),
                         name_of_scenario);

TEST_P(FailureLoops, EndAsStated)
{
    ASSERT_EQ(calls_reached(GetParam()), GetParam().reaches);
    int runs = 0;
    for (const Call call : GetParam().reaches) {
        const int failed = fail_each(GetParam(), call);
        EXPECT_GT(failed, 0) << name_of(call) << " was never made to fail";
        runs += failed;
    }
    RecordProperty("failed_runs", runs);
}

TEST_P(FailureLoops, LeaveNothingBehindWhenEverythingFailsFromACallOn)
{
    EXPECT_GT(fail_all_from_each(GetParam()), 0);
}

} // namespace
