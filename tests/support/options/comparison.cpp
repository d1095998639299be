#include "tests/support/options/comparison.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/harness/quoted.h"
#include "tests/support/options/argument_vector.h"

namespace {

std::string shown(const std::optional<std::string> &text)
{
    return text ? quoted(*text) : "null";
}

std::string shown(const Texts &texts)
{
    std::string all;
    for (const std::string &text : texts) {
        all += (all.empty() ? "" : " ") + quoted(text);
    }
    return all;
}

} // namespace

std::string describe(const Scenario &scenario)
{
    std::ostringstream out;
    out << "elements " << shown(scenario.elements) << "\nshort options "
        << shown(scenario.setting.short_options) << "\nlong only " << scenario.setting.long_only
        << ", POSIXLY_CORRECT " << scenario.setting.posixly_correct << ", option_errors "
        << scenario.errors << "\nelements beyond the count " << scenario.beyond_count
        << ", null element " << (scenario.null_element ? int(*scenario.null_element) : -1);
    for (const Move &move : scenario.moves) {
        out << "\ncall " << move.call << ":";
        out << (move.index ? " option_index = " + std::to_string(*move.index) : "");
        out << (move.position ? " option_position = " + std::to_string(*move.position) : "");
    }
    out << "\ntable";
    if (!scenario.setting.long_options) {
        out << " null";
    } else {
        for (const ModelRecord &record : *scenario.setting.long_options) {
            out << " {" << quoted(record.name) << ", " << record.has_argument
                << (record.has_flag ? ", flag, " : ", null, ") << record.value << "}";
        }
    }
    return out.str();
}

std::size_t Scenario::visible() const
{
    return std::min(elements.size() - beyond_count, null_element.value_or(elements.size()));
}

namespace {

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
        << seen.position << ", argument " << shown(seen.argument) << ", order " << shown(seen.order)
        << ", flags";
    for (const std::optional<int> &flag : seen.flags) {
        out << " " << (flag ? std::to_string(*flag) : "-");
    }
    return out.str();
}

/// The parser and its model in the same scan.
class Comparison {
public:
    explicit Comparison(const Scenario &scenario)
        : scenario_(scenario), arguments_(scenario.elements),
          model_order_(scenario.elements.begin(),
                       scenario.elements.begin() + std::ptrdiff_t(scenario.visible())),
          untouched_tail_(arguments_.vector() + scenario.visible(),
                          arguments_.vector() + scenario.elements.size()),
          flags_(records().size(), untouched), model_flags_(records().size())
    {
        for (std::size_t i = 0; i < records().size(); ++i) {
            const ModelRecord &record = records()[i];
            table_.push_back({record.name.c_str(), record.has_argument,
                              record.has_flag ? &flags_[i] : nullptr, record.value});
        }
        table_.push_back({nullptr, 0, nullptr, 0});
        if (scenario.null_element) {
            arguments_.vector()[*scenario.null_element] = nullptr;
            untouched_tail_.assign(arguments_.vector() + scenario.visible(),
                                   arguments_.vector() + scenario.elements.size());
        }
        if (scenario.setting.posixly_correct) {
            setenv("POSIXLY_CORRECT", "", 1);
        } else {
            unsetenv("POSIXLY_CORRECT");
        }
    }

    std::string run(OptionsModel &model, std::string &diagnostics)
    {
        option_index = model.option_index = 0;
        option_errors = model.option_errors = scenario_.errors;
        option_argument = nullptr; // it may point into the elements of an earlier scan
        model.option_argument.reset();
        for (std::size_t calls = 1; calls <= bound(); ++calls) {
            set_what_the_program_sets(calls, model);
            const Seen expected = call_model(model, diagnostics);
            const Seen actual = call_parser();
            if (!(actual == expected)) {
                return describe(scenario_) + "\ncall " + std::to_string(calls) + "\nis         " +
                       describe(actual) + "\nshould be  " + describe(expected);
            }
            if (!tail_is_untouched()) {
                return describe(scenario_) + "\nan element beyond the vector's end is another";
            }
            if ((actual.result == -1 && no_move_after(calls)) || is_bad_call()) {
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
    /// Every call gives the same.
    bool is_bad_call() const
    {
        return scenario_.visible() == 0 ||
               (!scenario_.setting.long_options && !scenario_.setting.short_options);
    }
    /// Every character, and every element, is good for two calls at the most.
    std::size_t bound() const
    {
        std::size_t pieces = scenario_.elements.size() + 1;
        for (const std::string &element : scenario_.elements) {
            pieces += element.size();
        }
        return 2 * pieces * (1 + scenario_.moves.size());
    }
    void set_what_the_program_sets(std::size_t call, OptionsModel &model) const
    {
        for (const Move &move : scenario_.moves) {
            if (move.call == call) {
                option_index = model.option_index = move.index.value_or(option_index);
                option_position = model.option_position = move.position.value_or(option_position);
            }
        }
    }
    bool no_move_after(std::size_t call) const
    {
        return std::none_of(scenario_.moves.begin(), scenario_.moves.end(),
                            [=](const Move &move) { return move.call > call; });
    }
    bool tail_is_untouched()
    {
        return std::equal(untouched_tail_.begin(), untouched_tail_.end(),
                          arguments_.vector() + scenario_.visible());
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
            arguments_.count() - int(scenario_.beyond_count), arguments_.vector(),
            setting.short_options ? setting.short_options->c_str() : nullptr,
            setting.long_options ? table_.data() : nullptr, &stored, setting.long_only);
        Seen seen = {result,          {}, {},     option_index, option_code, option_errors,
                     option_position, {}, order()};
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

    Texts order()
    {
        char **const vector = arguments_.vector();
        return {vector, vector + scenario_.visible()};
    }

    const Scenario &scenario_;
    Arguments arguments_;
    Texts model_order_;
    std::vector<const char *> untouched_tail_;
    std::vector<std::int32_t> flags_;
    std::vector<std::optional<int>> model_flags_;
    std::vector<long_option> table_;
};

} // namespace

std::string compare_scan(const Scenario &scenario, OptionsModel &model, std::string &diagnostics)
{
    return Comparison(scenario).run(model, diagnostics);
}
