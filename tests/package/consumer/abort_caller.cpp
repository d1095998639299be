// What the layer throws is caught by its type, also across the border of a shared library.
#include <cstdio>

#include "support/error.h"

int main()
{
    try {
        throw_abort(7, "abort_caller", 1);
    } catch (const CorvellaAbortException &abort) {
        std::printf("%s %d\n", abort.file, static_cast<int>(abort.code));
    }
}
