/// \file
/// What the tests of the option parser share: a clean start of the state and what a scan gives.
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/harness/capture.h"
#include "tests/support/options/argument_vector.h"

/// Starts every test with the initial values and with no word from the environment on the mode.
class OptionsTest : public testing::Test {
protected:
    OptionsTest()
    {
        unsetenv("POSIXLY_CORRECT");
        option_index = 0;
        option_argument = nullptr;
        option_code = '?';
        option_errors = 1;
        option_position = 0;
    }
    ~OptionsTest() override
    {
        unsetenv("POSIXLY_CORRECT");
    }
};

/// The results of \p call up to and without the -1; gives up after 100 calls, with a last entry of
/// -2 that no parser returns.
template <typename Call> std::vector<int> results_until_end(Call call)
{
    std::vector<int> results;
    for (int result = call(); result != -1; result = call()) {
        results.push_back(result);
        if (results.size() == 100) {
            results.push_back(-2);
            break;
        }
    }
    return results;
}

/// All that \p action writes to descriptor 2.
template <typename Action> std::string diagnostics_of(Action action)
{
    return capture_output([&] { action(); }).err;
}
