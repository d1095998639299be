/// \file
/// The program's command line, read.
#pragma once

#include <string>
#include <vector>

#include "web/web.h"

/// What the options of `update` say; a text is null where its option was not given.
struct update_options {
    const char *product;
    const char *productline;
    const char *version;
    const char *version_name;
    const char *os;
    const char *os_version;
    const char *machine_id;
    const char *arch;
    bool open_url;
};

/// All texts are those of the argument vector, but for the proxy's, which are copies.
struct command_line {
    const char *command;                ///< the first operand, or null
    std::vector<const char *> operands; ///< those behind the command
    bool show_help;
    bool show_version;
    bool show_header;
    bool automated;
    bool quiet;
    bool verbose;
    const char *output; ///< a file's path, or null
    update_options update;
    ProxySettings proxy;
};

/// Reads the arguments; complains to standard error of what cannot be read.
/// Blanks the password in \p vector, so that nobody reads it off the list of processes from then
/// on. \return false when the command line is invalid and all that is to say has been said.
bool read_command_line(int count, char **vector, command_line &line);

/// Complains of a command line and shows the usage text, both on standard error.
void complain_of_usage(const std::string &complaint);
