// Reports two messages to /dev/null, each between two calls of getppid that a trace of the system
// calls shows, and prints how many allocations each of them made.
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "support/error.h"

namespace {

long allocations = 0;

} // namespace

// The C library's own, under their other names.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *pointer, std::size_t size);

void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void *realloc(void *pointer, std::size_t size)
{
    ++allocations;
    return __libc_realloc(pointer, size);
}
}

int main()
{
    if (dup2(open("/dev/null", O_WRONLY), STDERR_FILENO) < 0) {
        return 1;
    }
    long counted[2];
    syscall(SYS_getppid);
    for (long &count : counted) {
        const long before = allocations;
        report_message(9, "Can't open file %s: error %d\n", "/Volumes/Work/picture.tif", 2);
        count = allocations - before;
        syscall(SYS_getppid);
    }
    std::printf("%ld %ld\n", counted[0], counted[1]);
    return 0;
}
