// The parser against its model, over random argument vectors, tables and short options.

#include "support/options.h"
#include "tests/harness/capture.h"
#include "tests/support/options/arguments.h"
#include "tests/support/options/model.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

/// Everything that one scan is given.
struct Scenario {
    Texts elements;
    ModelSetting setting;
    int errors = 1;
};

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
        return made;
    }

private:
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

std::string shown(const std::optional<std::string> &text)
{
    return text ? testing::PrintToString(*text) : "null";
}

std::string describe(const Scenario &scenario)
{
    std::ostringstream out;
    out << "elements " << testing::PrintToString(scenario.elements) << "\nshort options "
        << shown(scenario.setting.short_options) << "\nlong only " << scenario.setting.long_only
        << ", POSIXLY_CORRECT " << scenario.setting.posixly_correct << ", option_errors "
        << scenario.errors << "\ntable";
    if (!scenario.setting.long_options) {
        out << " null";
    } else {
        for (const ModelRecord &record : *scenario.setting.long_options) {
            out << " {" << testing::PrintToString(record.name) << ", " << record.has_argument
                << (record.has_flag ? ", flag, " : ", null, ") << record.value << "}";
        }
    }
    return out.str();
}

/// What can be seen after a call.
struct Seen {
    int result;
    std::optional<int> matched_record;
    std::vector<std::optional<int>> flags;
    int index, code, errors, position;
    std::optional<std::string> argument;
    Texts order;

    bool operator==(const Seen &other) const
    {
        return result == other.result && matched_record == other.matched_record &&
               flags == other.flags && index == other.index && code == other.code &&
               errors == other.errors && position == other.position && argument == other.argument &&
               order == other.order;
    }
};

std::string describe(const Seen &seen)
{
    std::ostringstream out;
    out << "result " << seen.result << ", record "
        << (seen.matched_record ? std::to_string(*seen.matched_record) : "none") << ", index "
        << seen.index << ", code " << seen.code << ", errors " << seen.errors << ", position "
        << seen.position << ", argument " << shown(seen.argument) << ", order "
        << testing::PrintToString(seen.order) << ", flags";
    for (const std::optional<int> &flag : seen.flags) {
        out << " " << (flag ? std::to_string(*flag) : "-");
    }
    return out.str();
}

/// The parser and its model in the same scan.
class Comparison {
public:
    explicit Comparison(const Scenario &scenario)
        : scenario_(scenario), arguments_(scenario.elements), model_order_(scenario.elements),
          flags_(records().size(), untouched), model_flags_(records().size())
    {
        for (std::size_t i = 0; i < records().size(); ++i) {
            const ModelRecord &record = records()[i];
            table_.push_back({record.name.c_str(), record.has_argument,
                              record.has_flag ? &flags_[i] : nullptr, record.value});
        }
        table_.push_back({nullptr, 0, nullptr, 0});
        if (scenario.setting.posixly_correct) {
            setenv("POSIXLY_CORRECT", "", 1);
        } else {
            unsetenv("POSIXLY_CORRECT");
        }
    }

    /// Runs both scans up to their end and adds what the model says to \p diagnostics.
    /// \return what differs, or nothing.
    std::string run(OptionsModel &model, std::string &diagnostics)
    {
        option_index = model.option_index = 0;
        option_errors = model.option_errors = scenario_.errors;
        option_argument = nullptr; // it may point into the elements of an earlier scan
        model.option_argument.reset();
        for (std::size_t calls = 1; calls <= bound(); ++calls) {
            const Seen expected = call_model(model, diagnostics);
            const Seen actual = call_parser();
            if (!(actual == expected)) {
                return describe(scenario_) + "\ncall " + std::to_string(calls) + "\nis         " +
                       describe(actual) + "\nshould be  " + describe(expected);
            }
            if (actual.result == -1 || is_bad_call()) {
                return "";
            }
        }
        return describe(scenario_) + "\nthe scan does not end";
    }

private:
    static constexpr std::int32_t untouched = -12345;

    static const ModelTable &no_records()
    {
        static const ModelTable none;
        return none;
    }
    const ModelTable &records() const
    {
        return scenario_.setting.long_options ? *scenario_.setting.long_options : no_records();
    }
    bool is_bad_call() const
    {
        return !scenario_.setting.long_options && !scenario_.setting.short_options;
    }
    /// Every character, and every element, is good for two calls at the most.
    std::size_t bound() const
    {
        std::size_t pieces = scenario_.elements.size() + 1;
        for (const std::string &element : scenario_.elements) {
            pieces += element.size();
        }
        return 2 * pieces;
    }

    Seen call_model(OptionsModel &model, std::string &diagnostics)
    {
        const ModelCall call = model.parse(model_order_, scenario_.setting);
        diagnostics += call.diagnostics;
        if (call.stored_value) {
            model_flags_[static_cast<std::size_t>(*call.matched_record)] = call.stored_value;
        }
        return {call.result,           call.matched_record,   model_flags_,
                model.option_index,    model.option_code,     model.option_errors,
                model.option_position, model.option_argument, model_order_};
    }

    Seen call_parser()
    {
        const ModelSetting &setting = scenario_.setting;
        int stored = untouched;
        const int result = parse_options(
            arguments_.count(), arguments_.vector(),
            setting.short_options ? setting.short_options->c_str() : nullptr,
            setting.long_options ? table_.data() : nullptr, &stored, setting.long_only);
        Seen seen = {result,          {},          {},
                     option_index,    option_code, option_errors,
                     option_position, {},          arguments_.order()};
        if (stored != untouched) {
            seen.matched_record = stored;
        }
        if (option_argument != nullptr) {
            seen.argument = option_argument;
        }
        for (const std::int32_t flag : flags_) {
            seen.flags.push_back(flag == untouched ? std::nullopt : std::optional<int>(flag));
        }
        return seen;
    }

    const Scenario &scenario_;
    Arguments arguments_;
    Texts model_order_;
    std::vector<std::int32_t> flags_;
    std::vector<std::optional<int>> model_flags_;
    std::vector<long_option> table_;
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
            difference = Comparison(scans.back()).run(model, expected);
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
    for (int batch = 0; batch < 50; ++batch) {
        const std::string difference = compare_scans(generator, model, 1000);
        ASSERT_TRUE(difference.empty()) << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ParserAndModel, testing::Range(1U, 11U));
