// Input, line by line: letters for the setting (L long only, P POSIXLY_CORRECT, Q quiet, S no short
// options, T no table); the short options; the records of the table, up to an empty line, each such
// as "2f-7 name": the kind of argument (the byte modulo 3), "f" for a flag, the value, the name;
// the elements.

#include "support/options.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "fuzz/captured_stream.h"
#include "fuzz/check.h"
#include "fuzz/input.h"
#include "tests/support/options/comparison.h"
#include "tests/support/options/model.h"

namespace {

ModelRecord record_of(std::string line)
{
    ModelRecord record;
    record.has_argument = static_cast<unsigned char>(line[0]) % 3;
    record.has_flag = line.size() > 1 && line[1] == 'f';
    line.erase(0, record.has_flag ? 2 : 1);
    record.value = Input::number(line);
    record.name = line.substr(line.empty() ? 0 : 1);
    return record;
}

Scenario scenario_of(Input &input)
{
    Scenario scenario;
    const std::string letters = input.line();
    const auto has = [&](char letter) { return letters.find(letter) != std::string::npos; };
    scenario.setting.long_only = has('L');
    scenario.setting.posixly_correct = has('P');
    scenario.errors = has('Q') ? 0 : 1;
    const std::string short_options = input.line();
    if (!has('S')) {
        scenario.setting.short_options = short_options;
    }
    ModelTable table;
    for (std::string line = input.line(); !line.empty(); line = input.line()) {
        table.push_back(record_of(line));
    }
    if (!has('T')) {
        scenario.setting.long_options = table;
    }
    while (!input.empty()) {
        scenario.elements.push_back(input.line());
    }
    return scenario;
}

void start_afresh()
{
    option_index = 0;
    option_argument = nullptr;
    option_code = '?';
    option_errors = 1;
    option_position = 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // None of the texts can hold a NUL.
    const std::string text = Input(data, size).text();
    Input input(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    const Scenario scenario = scenario_of(input);

    start_afresh();
    OptionsModel model;
    std::string difference;
    std::string expected;
    std::string diagnostics;
    {
        const CapturedStream captured(stderr);
        // The second scan starts from what the first one left.
        for (int scan = 0; scan < 2 && difference.empty(); ++scan) {
            difference = compare_scan(scenario, model, expected);
        }
        diagnostics = captured.text();
    }
    expect(difference.empty(), difference);
    expect_equal(diagnostics, expected, describe(scenario) + "\nstandard error");
    return 0;
}
