// Systems other than Mac OS X have no service that this program could ask.
#include "support/error.h"
#include "tool/desktop.h"

exit_status open_on_desktop(const char *target)
{
    report_message(9, "Open of %s failed: this system has no service that opens documents.",
                   target);
    return EXIT_FAILED;
}
