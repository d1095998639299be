#include "tests/support/options/model.h"

#include <algorithm>
#include <cstddef>

namespace {

bool begins_with(const std::string &text, const std::string &start)
{
    return text.compare(0, start.size(), start) == 0;
}

bool is_candidate(const std::string &element, bool long_only)
{
    if (long_only && begins_with(element, "+")) {
        return true;
    }
    return begins_with(element, "-") && element != "-" && !model_reads_as_number(element);
}

} // namespace

/// One call of the parser. Each step gives the call's result when it settles it.
class OptionsModel::Call {
public:
    Call(OptionsModel &model, std::vector<std::string> &elements, const ModelSetting &setting)
        : model_(model), elements_(elements), setting_(setting), count_(int(elements.size()))
    {
    }

    ModelCall make()
    {
        for (const auto step :
             {&Call::refuse_a_useless_call, &Call::end_or_start_the_scan, &Call::pass_over_operands,
              &Call::find_a_long_option, &Call::find_a_short_option, &Call::find_the_argument}) {
            if (const std::optional<int> result = (this->*step)()) {
                outcome_.result = *result;
                return outcome_;
            }
        }
        advance();
        outcome_.result = result_of_the_option();
        return outcome_;
    }

private:
    using Result = std::optional<int>;
    enum class Mode { permute, return_in_order, require_order };

    Result refuse_a_useless_call()
    {
        if (count_ == 0 || (!setting_.short_options && !setting_.long_options)) {
            return error();
        }
        return {};
    }

    Result end_or_start_the_scan()
    {
        if (model_.option_index == 0) {
            model_.scan_has_ended_ = false;
        }
        if (model_.option_index < 0 || model_.option_index >= count_) {
            return -1;
        }
        if (current() == "--") {
            ++model_.option_index;
            return -1;
        }
        if (model_.scan_has_ended_) {
            return -1;
        }
        if (model_.option_index == 0) {
            model_.option_position = 1;
            model_.option_index = 1;
        }
        start_ = model_.option_index;
        return {};
    }

    Result pass_over_operands()
    {
        const Mode mode = choose_mode();
        if (model_.option_index >= count_) { // nothing but the program's name
            return -1;
        }
        if (model_.option_position < 0 || model_.option_position > int(current().size())) {
            model_.option_position = 1; // a program has set it to where the element is not
        }
        if (model_.option_position != 1) {
            return {};
        }
        if (current() == "--") { // before any operand
            ++model_.option_index;
            return -1;
        }
        if (mode == Mode::permute) {
            return skip_operands();
        }
        if (current_is_candidate()) {
            return {};
        }
        if (mode == Mode::require_order) {
            return -1;
        }
        model_.option_code = 1;
        model_.option_argument = current();
        ++model_.option_index;
        return 1;
    }

    /// Also finds the option characters without the one that chooses the mode.
    Mode choose_mode()
    {
        characters_ = setting_.short_options.value_or("");
        if (begins_with(characters_, "+")) {
            characters_.erase(0, 1);
            return Mode::require_order;
        }
        if (begins_with(characters_, "-")) {
            characters_.erase(0, 1);
            return Mode::return_in_order;
        }
        return setting_.posixly_correct ? Mode::require_order : Mode::permute;
    }

    Result skip_operands()
    {
        while (model_.option_index < count_ && !current_is_candidate()) {
            ++skipped_;
            ++model_.option_index;
        }
        if (model_.option_index >= count_) {
            model_.option_index = start_;
            return -1;
        }
        if (current() == "--") {
            elements_.erase(elements_.begin() + model_.option_index);
            elements_.insert(elements_.begin() + start_, "--");
            model_.option_index = start_ + 1;
            return -1;
        }
        return {};
    }

    Result find_a_long_option()
    {
        std::string prefix;
        if (setting_.long_options && model_.option_position == 1) {
            if (begins_with(current(), "--")) {
                prefix = "--";
            } else if (setting_.long_only) {
                prefix = current().substr(0, 1);
            }
        }
        if (prefix.empty()) {
            return {};
        }
        model_.option_position = static_cast<int>(prefix.size());
        const std::string rest = current().substr(prefix.size());
        const std::string name = rest.substr(0, rest.find('='));
        attached_ = rest.substr(name.size());
        return match(name);
    }

    Result match(const std::string &name)
    {
        const ModelRecord *abbreviated = nullptr;
        for (const ModelRecord &record : *setting_.long_options) {
            if (record.name == name) {
                record_ = &record;
                return {};
            }
            if (begins_with(record.name, name)) {
                if (abbreviated != nullptr) {
                    return ambiguity(*abbreviated, record);
                }
                abbreviated = &record;
            }
        }
        record_ = abbreviated;
        return {};
    }

    Result ambiguity(const ModelRecord &first, const ModelRecord &second)
    {
        say("option `" + current() + "' is ambiguous (could be `--" + first.name + "' or `--" +
            second.name + "')");
        // With one dash the next call would only find the same again.
        model_.scan_has_ended_ = model_.option_position == 1;
        return error();
    }

    Result find_a_short_option()
    {
        if (record_ != nullptr || !setting_.short_options) {
            return {};
        }
        const auto position = static_cast<std::size_t>(model_.option_position);
        const char character = position < current().size() ? current()[position] : '\0';
        const std::size_t found =
            character == '\0' ? std::string::npos : characters_.find(character);
        if (found == std::string::npos) {
            return invalid_character(character);
        }
        short_option_ = character;
        model_.option_code = static_cast<unsigned char>(character);
        const std::string behind = characters_.substr(found + 1);
        kind_of_short_ = begins_with(behind, "::") ? 2 : begins_with(behind, ":") ? 1 : 0;
        attached_ = current().substr(position + 1);
        return {};
    }

    Result invalid_character(char character)
    {
        say(std::string("invalid option -- `-") + character + "'");
        ++model_.option_position;
        if (static_cast<std::size_t>(model_.option_position) >= current().size()) {
            ++model_.option_index;
            model_.option_position = 1;
        }
        return error();
    }

    Result find_the_argument()
    {
        if (record_ == nullptr && !short_option_) {
            // With a name that nothing knows, and no short options to read it as, the next call
            // would only find the same again.
            model_.scan_has_ended_ = model_.option_position != 1;
            return {};
        }
        const int kind = record_ != nullptr ? record_->has_argument : kind_of_short_;
        if (kind == 0) {
            model_.option_argument.reset();
            const bool finished = record_ != nullptr || attached_.empty();
            model_.option_position = finished ? 1 : model_.option_position + 1;
            return {};
        }
        const std::string text = begins_with(attached_, "=") ? attached_.substr(1) : attached_;
        if (!text.empty()) {
            model_.option_argument = text;
            model_.option_position = 1;
            return {};
        }
        return kind == 1 ? required_argument_from_next_element() : optional_argument_absent();
    }

    Result required_argument_from_next_element()
    {
        if (model_.option_index + 1 < count_) {
            model_.option_argument = elements_[static_cast<std::size_t>(model_.option_index) + 1];
            model_.option_position = 1;
            taken_ = 2;
            return {};
        }
        say("argument required for option `" +
            (record_ != nullptr ? "--" + record_->name : std::string("-") + *short_option_) + "'");
        ++model_.option_index;
        model_.option_code = ':';
        return ':';
    }

    Result optional_argument_absent()
    {
        model_.option_argument.reset();
        // Unless its position is the first, the element stays current. The next call would only
        // find the short option again or, without short options, nothing.
        model_.scan_has_ended_ =
            model_.option_position != 1 && (short_option_ || !setting_.short_options);
        return {};
    }

    /// Brings a finished element, with its argument, in front of the operands before it.
    void advance()
    {
        if (model_.option_position == 1) {
            const auto block = elements_.begin() + start_;
            std::rotate(block, block + skipped_, block + skipped_ + taken_);
            model_.option_index = start_ + taken_;
        }
    }

    int result_of_the_option()
    {
        if (record_ == nullptr) {
            return model_.option_code;
        }
        outcome_.matched_record = static_cast<int>(record_ - setting_.long_options->data());
        if (!record_->has_flag) {
            return record_->value;
        }
        outcome_.stored_value = record_->value;
        return 0;
    }

    const std::string &current() const
    {
        return elements_.at(static_cast<std::size_t>(model_.option_index));
    }
    bool current_is_candidate() const
    {
        return is_candidate(current(), setting_.long_only);
    }
    int error()
    {
        model_.option_code = '?';
        return '?';
    }
    void say(const std::string &complaint)
    {
        if (model_.option_errors != 0) {
            outcome_.diagnostics = elements_[0] + ": " + complaint + "\n";
        }
    }

    OptionsModel &model_;
    std::vector<std::string> &elements_;
    const ModelSetting &setting_;
    int count_;
    std::string characters_;
    int start_ = 0;   ///< where the call began to look
    int skipped_ = 0; ///< operands between there and the option
    int taken_ = 1;   ///< elements of the option, its argument included
    const ModelRecord *record_ = nullptr;
    std::optional<char> short_option_;
    int kind_of_short_ = 0;
    std::string attached_; ///< what follows the name or the character
    ModelCall outcome_;
};

ModelCall OptionsModel::parse(std::vector<std::string> &elements, const ModelSetting &setting)
{
    return Call(*this, elements, setting).make();
}
