#include "tool/desktop.h"

#include <string>

#include "platform/platform.h"
#include "tool/output.h"

namespace corvella {

exit_status open_on_desktop(const char *target)
{
    if (open_document(target) != 0) {
        report_error("Open of " + std::string(target) + " failed.");
        return EXIT_FAILED;
    }
    return EXIT_DONE;
}

} // namespace corvella
