/// \file
/// The program's command line, read.
#pragma once

#include <string>
#include <vector>

#include "web/web.h"

namespace corvella {

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
    std::string url; ///< the first operand of get and post, without its fragment; operands has it
    bool show_help;
    bool show_version; ///< only without a command
    bool show_header;
    bool automated;
    bool quiet;
    bool verbose;
    const char *output; ///< a file's path; null for standard output
    bool keep_partial;
    bool keep_body;
    const char *data;          ///< what post sends instead of fields: a file's path, "-", or null
    const char *type;          ///< the media type of \c data, or null
    double max_time;           ///< in seconds; 0 for no limit
    const char *max_time_text; ///< as the user typed it, or null
    update_options update;
    bool reads_password; ///< obtain_password() fills in the one of \c proxy
    ProxySettings proxy; ///< its user and password are those of -user and -pass where given
};

/// Reads the arguments. Blanks passwords in \p vector, so that the list of processes shows them no
/// longer. \return false after reporting an error.
bool read_command_line(int count, char **vector, command_line &line);

/// Reports a usage error and refers to -help. Sanitizes \p complaint for a terminal.
void report_usage_error(const std::string &complaint);

} // namespace corvella
