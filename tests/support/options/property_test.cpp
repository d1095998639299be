// The parser against its model, over random argument vectors, tables and short options.

#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "tests/harness/capture.h"
#include "tests/harness/valgrind.h"
#include "tests/support/options/arguments.h"
#include "tests/support/options/comparison.h"
#include "tests/support/options/model.h"

namespace {

/// Random scenarios, dense in what the parser treats in a special way.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    Scenario scenario()
    {
        Scenario made;
        made.setting = setting();
        made.errors = chance(10) ? 0 : pick<int>({1, 1, 2, -1});
        made.elements.push_back(chance(100) ? "--" : pick<std::string>({"prog", "/bin/p", ""}));
        const int count = below(7);
        for (int i = 0; i < count; ++i) {
            made.elements.push_back(element(made.setting));
        }
        if (chance(4)) {
            made.beyond_count = std::size_t(below(int(made.elements.size())));
        }
        if (made.elements.size() > 1 && chance(8)) {
            made.null_element = 1 + std::size_t(below(int(made.elements.size()) - 1));
        }
        for (int i = chance(4) ? 1 + below(2) : 0; i > 0; --i) {
            made.moves.push_back(move(int(made.visible())));
        }
        return made;
    }

private:
    Move move(int visible)
    {
        Move made = {std::size_t(1 + below(6)), {}, {}};
        if (chance(2)) {
            made.index = chance(10) ? -1 : below(visible + 1);
        }
        if (chance(2)) {
            made.position = chance(10) ? pick<int>({INT_MIN, INT_MAX}) : below(8) - 2;
        }
        return made;
    }
    int below(int limit)
    {
        return std::uniform_int_distribution<int>(0, limit - 1)(random_);
    }
    /// True once in \p n times.
    bool chance(int n)
    {
        return below(n) == 0;
    }
    template <typename T> T pick(const std::vector<T> &choices)
    {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }
    std::string text(const std::string &characters, int most)
    {
        std::string made;
        for (int i = below(most + 1); i > 0; --i) {
            made += characters[static_cast<std::size_t>(below(int(characters.size())))];
        }
        return made;
    }

    ModelSetting setting()
    {
        ModelSetting made;
        made.long_only = chance(2);
        made.posixly_correct = chance(8);
        if (!chance(6)) {
            made.short_options = short_options();
        }
        if (!chance(6)) {
            made.long_options = table();
        }
        return made;
    }
    std::string short_options()
    {
        std::string made = pick<std::string>({"", "", "", "+", "-", ":", "+:", "--", "-+"});
        for (int i = below(7); i > 0; --i) {
            made += text("abov5-+=\xe9", 1);
            made += pick<std::string>({"", "", "", ":", "::"});
        }
        return made;
    }
    ModelTable table()
    {
        ModelTable made;
        for (int i = below(6); i > 0; --i) {
            ModelRecord record;
            record.name = pick<std::string>({"a", "al", "all", "o", "ob", "output", "v", "ver",
                                             "vers", "verbose", "version", "5", "a=b", "all", ""});
            record.has_argument = below(3);
            record.has_flag = chance(3);
            record.value = pick<int>({0, 1, 63, 58, 'a', 300, 301, 302, -7});
            made.push_back(record);
        }
        return made;
    }
    std::string element(const ModelSetting &setting)
    {
        switch (below(8)) {
        case 0:
            return pick<std::string>({"--", "-", "", "+", "x", "operand", "x", "--=", "-=", "++"});
        case 1:
            return pick<std::string>({"-5", "-.5", "-5x", "-1e3", "+5", "-1e", "-inf", "-infi",
                                      "-nan(a)", "-nan(", "-5 ", "-5 x", "--5", "-0x1p3", "-0x"});
        case 2:
        case 3:
            return "-" + text("abov5z", 4);
        case 4:
            return "-" + text("aov-+=:5\xe9\xff", 4);
        case 5:
            return pick<std::string>({"-", "+", "--"}) + text("alovers=", 5);
        default:
            return long_name(setting);
        }
    }
    /// A name of the table, often cut short and often with an argument.
    std::string long_name(const ModelSetting &setting)
    {
        std::string name = "verse";
        if (setting.long_options && !setting.long_options->empty()) {
            name = pick(*setting.long_options).name;
        }
        if (chance(2)) {
            name.resize(static_cast<std::size_t>(below(static_cast<int>(name.size()) + 1)));
        }
        return pick<std::string>({"--", "--", "-", "+"}) + name +
               pick<std::string>({"", "", "=", "=x", "==", "=-5", "z"});
    }

    std::mt19937 random_;
};

/// What is first different in two texts made of a line "#number" before the output of each scan.
std::string first_difference(const std::vector<Scenario> &scans, const std::string &actual,
                             const std::string &expected)
{
    std::size_t place = 0;
    while (place < actual.size() && place < expected.size() && actual[place] == expected[place]) {
        ++place;
    }
    const std::size_t mark = expected.rfind('#', place == 0 ? 0 : place - 1);
    const auto number = std::strtoul(expected.c_str() + mark + 1, nullptr, 10);
    return describe(scans.at(number)) + "\nstandard error is " +
           testing::PrintToString(actual.substr(mark, 300)) + "\nand should be     " +
           testing::PrintToString(expected.substr(mark, 300));
}

/// \return what differs first in \p count scans, or nothing.
std::string compare_scans(Generator &generator, OptionsModel &model, int count)
{
    std::vector<Scenario> scans;
    std::string difference;
    std::string expected;
    const CapturedOutput output = capture_output([&] {
        for (int i = 0; i < count && difference.empty(); ++i) {
            scans.push_back(generator.scenario());
            const std::string mark = "#" + std::to_string(i) + "\n";
            expected += mark;
            std::fputs(mark.c_str(), stderr);
            difference = compare_scan(scans.back(), model, expected);
        }
    });
    if (difference.empty() && output.err != expected) {
        difference = first_difference(scans, output.err, expected);
    }
    if (difference.empty() && !output.out.empty()) {
        difference = "standard output is " + testing::PrintToString(output.out);
    }
    return difference;
}

class ParserAndModel : public OptionsTest, public testing::WithParamInterface<unsigned> {};

} // namespace

TEST_P(ParserAndModel, AgreeInEverythingThatCanBeSeen)
{
    Generator generator(GetParam());
    OptionsModel model;
    const int batches = runs_under_valgrind() ? 3 : 20;
    for (int batch = 0; batch < batches; ++batch) {
        const std::string difference = compare_scans(generator, model, 1000);
        ASSERT_TRUE(difference.empty()) << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ParserAndModel, testing::Range(1U, 5U));
