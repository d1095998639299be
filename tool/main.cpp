// The program corvella: a thin caller of the support layer.
#include <csignal>
#include <fcntl.h>
#include <new>
#include <string>
#include <unistd.h>

#include "support/error.h"
#include "support/version.h"
#include "tool/commands.h"
#include "tool/option_table.h"
#include "tool/output.h"
#include "tool/terminal.h"
#include "tool/usage_text.h"

namespace corvella {

namespace {

exit_status run_command(command_line &line)
{
    if (line.command == nullptr) {
        report_usage_error("A command is needed.");
        return EXIT_USAGE;
    }
    switch (meaning_of_command(line.command)) {
    case COMMAND_GET:
        return get_command(line);
    case COMMAND_POST:
        return post_command(line);
    case COMMAND_UPDATE:
        return update_command(line);
    case COMMAND_DESCRIBE:
        return describe_command(line);
    case COMMAND_OPEN:
        return open_command(line);
    default:
        break;
    }
    report_usage_error(std::string("There is no command '") + line.command + "'.");
    return EXIT_USAGE;
}

exit_status run(int count, char **vector)
{
    command_line line;
    if (!read_command_line(count, vector, line)) {
        return EXIT_USAGE;
    }
    if (line.show_help) {
        const std::string text = usage_text(terminal_columns(STDOUT_FILENO));
        return write_standard_output(text) ? EXIT_DONE : EXIT_FAILED;
    }
    exit_status status = EXIT_DONE;
    if (line.show_version && line.command == nullptr) {
        print_result("version", "corvella " CORVELLA_VERSION);
    } else {
        status = run_command(line);
    }
    return status == EXIT_DONE && results_were_lost() ? EXIT_FAILED : status;
}

/// Fills the descriptors 0, 1 and 2 that are closed, or a connection would get their number and the
/// server the messages. Using one still fails: nothing can be read from the first, and nothing
/// written to the others. They are a directory, which no file of -output is.
void fill_standard_descriptors()
{
    if (fcntl(STDIN_FILENO, F_GETFD) < 0) {
        open("/dev/null", O_WRONLY); // opens the lowest number that is free
    }
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            open("/", O_RDONLY);
        }
    }
}

} // namespace

} // namespace corvella

int main(int count, char **vector)
{
    corvella::fill_standard_descriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone is reported like any failed write
    try {
        return corvella::run(count, vector);
    } catch (const std::bad_alloc &) {
        report_message(9, "Out of memory.");
        return corvella::EXIT_FAILED;
    }
}
