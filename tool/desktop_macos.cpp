#include "platform/platform.h"
#include "support/error.h"
#include "tool/desktop.h"

exit_status open_on_desktop(const char *target)
{
    if (open_document(target) != 0) {
        report_message(9, "Open of %s failed.", target);
        return EXIT_FAILED;
    }
    return EXIT_DONE;
}
