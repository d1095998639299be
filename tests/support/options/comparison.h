/// \file
/// The option parser and its model in the same scan.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/options/model.h"

using Texts = std::vector<std::string>;

/// What a program sets itself in front of a call.
struct Move {
    std::size_t call; ///< counted from 1
    std::optional<int> index;
    std::optional<int> position;
};

/// Everything that one scan is given.
struct Scenario {
    Texts elements;
    ModelSetting setting;
    int errors = 1;
    std::size_t beyond_count = 0;            ///< elements at the end that the count leaves out
    std::optional<std::size_t> null_element; ///< its pointer is null; not the program's name
    std::vector<Move> moves;

    /// How many elements a scan reads.
    std::size_t visible() const;
};

std::string describe(const Scenario &scenario);

/// Runs a scan with the parser and with \p model, from its start to its end, which must come within
/// two calls a byte and element. Adds what the model says to \p diagnostics.
/// \return what differs, or nothing.
std::string compare_scan(const Scenario &scenario, OptionsModel &model, std::string &diagnostics);
