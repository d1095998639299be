// The parser against the GNU library's getopt_long, on scans that both define alike: known options,
// whole or clearly abbreviated names, arguments where they must stand, no "=" for short options, no
// optional long argument left out, clusters only where no operand was skipped before them, and an
// exact name in the table before the names that it abbreviates.

#include <cstddef>
#include <cstdint>
#include <getopt.h>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/harness/valgrind.h"
#include "tests/support/options/arguments.h"

#if defined(__GLIBC__)

namespace {

using Texts = std::vector<std::string>;

/// What a whole scan gives.
struct Scan {
    struct Step {
        int result;
        std::string argument; ///< "null" or "=" and the text
        int record;
    };
    std::vector<Step> steps;
    int first_operand = 0;
    int flag = 0;
    Texts order;
};

bool operator==(const Scan::Step &a, const Scan::Step &b)
{
    return a.result == b.result && a.argument == b.argument && a.record == b.record;
}

void PrintTo(const Scan::Step &step, std::ostream *out)
{
    *out << "{" << step.result << ", " << step.argument << ", " << step.record << "}";
}

std::string shown(const char *text)
{
    return text == nullptr ? "null" : std::string("=") + text;
}

constexpr std::size_t most_steps = 100;

Scan scan_with_the_parser(const Texts &elements, const std::string &short_options)
{
    Scan scan;
    const long_option table[] = {
        {"all", 0, nullptr, 301},      {"output", 1, nullptr, 302}, {"level", 2, nullptr, 303},
        {"flagged", 0, &scan.flag, 7}, {"ver", 0, nullptr, 304},    {"verbose", 0, nullptr, 305},
        {"version", 1, nullptr, 306},  {nullptr, 0, nullptr, 0},
    };
    Arguments args(elements);
    option_index = 0;
    option_errors = 0;
    while (scan.steps.size() < most_steps) {
        int record = -1;
        const int result =
            get_long_options(args.count(), args.vector(), short_options.c_str(), table, &record);
        if (result == -1) {
            break;
        }
        scan.steps.push_back({result, shown(option_argument), record});
    }
    scan.first_operand = option_index;
    scan.order = args.order();
    return scan;
}

Scan scan_with_the_platform(const Texts &elements, const std::string &short_options)
{
    Scan scan;
    const option table[] = {
        {"all", no_argument, nullptr, 301},           {"output", required_argument, nullptr, 302},
        {"level", optional_argument, nullptr, 303},   {"flagged", no_argument, &scan.flag, 7},
        {"ver", no_argument, nullptr, 304},           {"verbose", no_argument, nullptr, 305},
        {"version", required_argument, nullptr, 306}, {nullptr, 0, nullptr, 0},
    };
    Arguments args(elements);
    optind = 0;
    opterr = 0;
    while (scan.steps.size() < most_steps) {
        int record = -1;
        const int result =
            getopt_long(args.count(), args.vector(), short_options.c_str(), table, &record);
        if (result == -1) {
            break;
        }
        scan.steps.push_back({result, shown(optarg), record});
    }
    scan.first_operand = optind;
    scan.order = args.order();
    return scan;
}

/// Random vectors of the common kind.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    Texts elements(const std::string &mode)
    {
        Texts made = {"prog"};
        bool operand_before = false;
        for (int i = below(7); i > 0; --i) {
            switch (below(8)) {
            case 0:
            case 1:
                made.push_back(pick({"x", "operand", "-", "", "a=b", "+a"}));
                operand_before = true;
                break;
            case 2:
                made.push_back("--");
                break;
            case 3:
                made.push_back(mode.empty() && operand_before ? "-a" : cluster());
                break;
            case 4:
                add_option_with_its_argument(made);
                break;
            case 5:
                made.push_back(pick({"-ovalue", "-o-", "-o5", "-p", "-pvalue", "-p-a"}));
                break;
            default:
                made.push_back(pick({"--all", "--al", "--a", "--all", "--output=x", "--out=x=y",
                                     "--o=-a", "--level=3", "--l==", "--flagged", "--f", "--ver",
                                     "--verb", "--verbose", "--vers=1", "--version=--"}));
            }
        }
        return made;
    }

private:
    int below(int limit)
    {
        return std::uniform_int_distribution<int>(0, limit - 1)(random_);
    }
    std::string pick(const std::vector<const char *> &choices)
    {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }
    std::string cluster()
    {
        std::string made = "-";
        for (int i = 1 + below(4); i > 0; --i) {
            made += pick({"a", "b", "v"});
        }
        return made + pick({"", "", "", "ovalue", "pvalue"});
    }
    void add_option_with_its_argument(Texts &made)
    {
        made.push_back(pick({"-o", "--output", "--outp", "--version"}));
        made.push_back(pick({"x", "-a", "--", "-", "", "--all", "=y", "-5"}));
    }

    std::mt19937 random_;
};

class ParserAndPlatform : public OptionsTest, public testing::WithParamInterface<const char *> {};

} // namespace

TEST_P(ParserAndPlatform, AgreeOnTheCommonKindOfCommandLine)
{
    const std::string mode = GetParam();
    Generator generator(1);
    const int scans = runs_under_valgrind() ? 5000 : 30000;
    for (int i = 0; i < scans; ++i) {
        const Texts elements = generator.elements(mode);
        const std::string short_options = mode + "abo:p::v";
        const Scan ours = scan_with_the_parser(elements, short_options);
        const Scan theirs = scan_with_the_platform(elements, short_options);
        ASSERT_LT(ours.steps.size(), most_steps) << testing::PrintToString(elements);
        ASSERT_EQ(ours.steps, theirs.steps) << testing::PrintToString(elements);
        ASSERT_EQ(ours.first_operand, theirs.first_operand) << testing::PrintToString(elements);
        ASSERT_EQ(ours.flag, theirs.flag) << testing::PrintToString(elements);
        ASSERT_EQ(ours.order, theirs.order) << testing::PrintToString(elements);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, ParserAndPlatform, testing::Values("", "+", "-"));

#endif
