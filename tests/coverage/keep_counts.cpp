// A process that ends without its exit handlers would take its counts with it. In a build that
// counts, these come between the tests and the system.
#include <cstdlib>
#include <unistd.h>

extern "C" {

void __gcov_dump();

[[noreturn]] void __real__exit(int status);
[[noreturn]] void __real__Exit(int status);

[[noreturn]] void __wrap__exit(int status)
{
    __gcov_dump();
    __real__exit(status);
}

[[noreturn]] void __wrap__Exit(int status)
{
    __gcov_dump();
    __real__Exit(status);
}
}
