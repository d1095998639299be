// Systems other than Mac OS X have no service that this program could ask.
#include "tool/desktop.h"

#include <string>

#include "tool/output.h"

namespace corvella {

exit_status open_on_desktop(const char *target)
{
    report_error("Open of " + std::string(target) +
                 " failed: this system has no service that opens documents.");
    return EXIT_FAILED;
}

} // namespace corvella
