// The parser against its model for every vector of up to four elements from a small alphabet.

#include <cstddef>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/harness/capture.h"
#include "tests/support/options/arguments.h"
#include "tests/support/options/comparison.h"
#include "tests/support/options/model.h"

namespace {

const Texts alphabet = {"-a",    "-b",   "-ab",     "-o",   "-ox",   "-o=x",        "-p",
                        "-px",   "-z",   "--all",   "--al", "--ver", "--version=x", "--out",
                        "--lev", "--zz", "-all",    "+all", "-5",    "-2.5e3x",     "--",
                        "-",     "=",    "operand", ""};

const ModelTable table = {
    {"all", 0, false, 300},    {"output", 1, false, 301}, {"level", 2, false, 302},
    {"verbose", 0, true, 303}, {"version", 2, true, 304},
};

/// The next of the vectors of \p length elements, as digits; false after the last.
bool advance(std::vector<std::size_t> &digits)
{
    for (std::size_t &digit : digits) {
        if (++digit < alphabet.size()) {
            return true;
        }
        digit = 0;
    }
    return false;
}

struct Kind {
    const char *name;
    const char *short_options;
    bool long_only;
};

class EveryVector : public OptionsTest, public testing::WithParamInterface<Kind> {};

} // namespace

TEST_P(EveryVector, IsScannedAsByTheModel)
{
    OptionsModel model;
    long scans = 0;
    std::string difference;
    std::string expected;
    const CapturedOutput output = capture_output([&] {
        for (std::size_t length = 0; length <= 4 && difference.empty(); ++length) {
            std::vector<std::size_t> digits(length, 0);
            do {
                Scenario scenario;
                scenario.elements = {"p"};
                for (const std::size_t digit : digits) {
                    scenario.elements.push_back(alphabet[digit]);
                }
                scenario.setting = {GetParam().short_options, table, GetParam().long_only, false};
                difference = compare_scan(scenario, model, expected);
                ++scans;
            } while (difference.empty() && advance(digits));
        }
    });
    ASSERT_EQ(difference, "");
    ASSERT_TRUE(output.err == expected) << "the diagnostics differ";
    std::printf("%ld vectors\n", scans);
}

INSTANTIATE_TEST_SUITE_P(Modes, EveryVector,
                         testing::Values(Kind{"Permute", "abo:p::", false},
                                         Kind{"PermuteLongOnly", "abo:p::", true},
                                         Kind{"RequireOrder", "+abo:p::", false},
                                         Kind{"RequireOrderLongOnly", "+abo:p::", true},
                                         Kind{"ReturnInOrder", "-abo:p::", false},
                                         Kind{"ReturnInOrderLongOnly", "-abo:p::", true}),
                         [](const auto &kind) { return std::string(kind.param.name); });
