#include "tool/commands.h"
#include "tool/desktop.h"

namespace corvella {

exit_status open_command(command_line &line)
{
    if (line.operands.size() != 1) {
        report_usage_error("open takes one path or URL.");
        return EXIT_USAGE;
    }
    return open_on_desktop(line.operands[0]);
}

} // namespace corvella
