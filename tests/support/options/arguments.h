/// \file
/// What the tests of the option parser share: argument vectors and a clean start of the state.
#pragma once

#include "support/options.h"
#include "tests/harness/capture.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// The argument vector of a program, element 0 included; a null pointer stands at the count.
class Arguments {
public:
    Arguments(std::initializer_list<std::string> elements)
        : Arguments(std::vector<std::string>(elements))
    {
    }
    explicit Arguments(std::vector<std::string> elements) : texts_(std::move(elements))
    {
        for (std::string &text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
    }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    int count() const
    {
        return static_cast<int>(texts_.size());
    }
    char **vector()
    {
        return pointers_.data();
    }
    /// The elements in the order that they have now.
    std::vector<std::string> order() const
    {
        return {pointers_.begin(), pointers_.end() - 1};
    }

private:
    std::vector<std::string> texts_;
    std::vector<char *> pointers_;
};

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
