#include "tool/commands.h"
#include "tool/desktop.h"

exit_status open_command(command_line &line)
{
    if (line.operands.size() != 1) {
        complain_of_usage("open takes one path or URL.");
        return EXIT_USAGE;
    }
    return open_on_desktop(line.operands[0]);
}
