/// \file
/// The options of the program: one table for the parser and the usage text.
#pragma once

#include <string>
#include <vector>

#include "support/options.h"

/// What an option means; the code that the parser returns for it.
enum option_meaning {
    OPTION_PROXY = 256, // beyond every character
    OPTION_PROXY_USER,
    OPTION_PROXY_PASS,
    OPTION_OUTPUT,
    OPTION_HEADER,
    OPTION_AUTOMATED,
    OPTION_HELP,
    OPTION_SHOW_VERSION,
    OPTION_PRODUCT,
    OPTION_PRODUCTLINE,
    OPTION_VERSION,
    OPTION_VERSION_NAME,
    OPTION_OS,
    OPTION_OS_VERSION,
    OPTION_MACHINE_ID,
    OPTION_ARCH,
    OPTION_OPEN,
};

/// \return the parser's table. "-version" asks for the program's own version, except where the
/// command is `update`: there it takes the product's.
std::vector<long_option> parser_table(bool updates);

/// \return the name of an option that does not go with \p command; null when it does.
const char *misplaced_option(option_meaning meaning, const char *command);

/// \return the whole usage text.
std::string usage_text();
