/// \file
/// A second, plain account of the option parser, for comparison with the real one.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// One record of a long-option table.
struct ModelRecord {
    std::string name;
    int has_argument = 0;
    bool has_flag = false;
    int value = 0;
};

using ModelTable = std::vector<ModelRecord>;

/// What does not change during a scan. An absent text or table stands for a null pointer.
struct ModelSetting {
    std::optional<std::string> short_options;
    std::optional<ModelTable> long_options;
    bool long_only = false;
    bool posixly_correct = false;
};

/// What one call does besides changing the variables and the order of the elements.
struct ModelCall {
    int result = 0;
    std::optional<int> matched_record; ///< stored through the index out-pointer
    std::optional<int> stored_value;   ///< stored through the matched record's flag
    std::string diagnostics;
};

/// The parser with the variables that it keeps.
class OptionsModel {
public:
    int option_index = 0;
    std::optional<std::string> option_argument;
    int option_code = '?';
    int option_errors = 1;
    int option_position = 0;

    ModelCall parse(std::vector<std::string> &elements, const ModelSetting &setting);

private:
    class Call;
    bool scan_has_ended_ = false;
};

/// Whether `%f%s` converts exactly one item of \p text: a floating-point number, then nothing but
/// white space.
bool model_reads_as_number(const std::string &text);
