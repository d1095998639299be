/// \file
/// The option parser and its model in the same scan.
#pragma once

#include "tests/support/options/model.h"

#include <string>
#include <vector>

using Texts = std::vector<std::string>;

/// Everything that one scan is given.
struct Scenario {
    Texts elements;
    ModelSetting setting;
    int errors = 1;
};

std::string describe(const Scenario &scenario);

/// Runs a scan with the parser and with \p model, from its start to its end, which must come within
/// two calls a byte and element. Adds what the model says to \p diagnostics.
/// \return what differs, or nothing.
std::string compare_scan(const Scenario &scenario, OptionsModel &model, std::string &diagnostics);
