#include "support/error/abort.h"

#include <cstdio>

#include "support/error/messages.h"
#include "support/error/recorder.h"

void assertion_failed(const char *expression, const char *file, int line)
{
    char text[4096];
    text[0] = '\0';
    std::snprintf(text, sizeof text, "%s:%d: assertion failed: %s", file, line, expression);
    record_timestamped_line(text);
    report_message(9, "A Corvella internal error has occurred. "
                      "Please save your work soon and restart.\n");
    // Deliberately the same place for every assertion: the details are in the record.
    throw_abort(5, "support/error", 429);
}

void throw_abort(int code, const char *file, int line)
{
    throw CorvellaAbortException{file, line, code, 0};
}
