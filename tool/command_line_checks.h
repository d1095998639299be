/// \file
/// Checks of the options of a command line. Used only by read_command_line().
#pragma once

#include <vector>

#include "tool/command_line.h"
#include "tool/option_table.h"

namespace corvella {

/// A password of the command line.
struct given_secret {
    bool given;
    bool on_input; ///< the argument is "-"
    bool too_long; ///< \c text is truncated
    char text[sizeof ProxySettings::password];
};

/// The options that command_line does not keep as they are. Absent strings are null.
struct given_options {
    const char *proxy;
    const char *proxy_user;
    given_secret proxy_pass;
    const char *user;
    given_secret pass;
    const char *max_time;
    std::vector<option_meaning> options; ///< all that were given
};

/// Checks that the options fit together and fills in the credentials and the time limit.
/// \return false after reporting an error.
bool check_options(command_line &line, const given_options &given);

} // namespace corvella
