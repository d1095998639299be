#include "tests/harness/failing_calls.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <netdb.h>
#include <sys/socket.h>

#include "tests/harness/failing_calls_inside.h"

FailingCallsSettings failing_calls;

namespace {

/// Something that was taken while calls were watched; size 0 for a stream or directory.
struct Held {
    const void *thing;
    std::size_t size;
};

// Nothing here may allocate while calls are watched. The product runs on the watching thread alone,
// so that all of this is touched by no other.
thread_local bool watching = false;
thread_local std::array<Held, 4096> held;
thread_local std::size_t held_count = 0;
Failure chosen;
CallsSeen seen;
int calls_in_all = 0;
std::array<int, call_count> first_errors = {};

/// What the product calls may itself call; that is not to be counted.
class Unwatched {
public:
    Unwatched() : before_(watching)
    {
        watching = false;
    }
    Unwatched(const Unwatched &) = delete;
    Unwatched &operator=(const Unwatched &) = delete;
    ~Unwatched()
    {
        watching = before_;
    }

private:
    bool before_;
};

bool is_chosen(Call call, int number)
{
    if (!chosen.of_every_call && chosen.call != call) {
        return false;
    }
    number = chosen.of_every_call ? calls_in_all : number;
    if (chosen.of_every_call && call == Call::Clock) {
        return number == chosen.number;
    }
    switch (chosen.how) {
    case Failure::Once:
        return number == chosen.number;
    case Failure::FromThenOn:
        return number >= chosen.number;
    case Failure::EveryOther:
        return number % 2 == 1;
    case Failure::Never:
        break;
    }
    return false;
}

} // namespace

bool fails(Call call, bool shrinks)
{
    if (!watching) {
        return false;
    }
    ++calls_in_all;
    if (!is_chosen(call, ++seen.made[static_cast<std::size_t>(call)])) {
        return false;
    }
    seen.only_shrinking_failed = shrinks && (seen.failed == 0 || seen.only_shrinking_failed);
    ++seen.failed;
    const int error =
        chosen.of_every_call ? first_errors[static_cast<std::size_t>(call)] : chosen.error;
    if (failing_calls.failed_call_takes_time != nullptr) {
        failing_calls.failed_call_takes_time();
    }
    (call == Call::Lookup ? h_errno : errno) = error;
    return true;
}

void *hold(void *thing, std::size_t size)
{
    if (watching && thing != nullptr) {
        if (held_count == held.size()) {
            std::abort();
        }
        held[held_count++] = {thing, size};
    }
    return thing;
}

std::size_t let_go(const void *thing)
{
    for (std::size_t i = held_count; i-- > 0;) {
        if (held[i].thing == thing) {
            const std::size_t size = held[i].size;
            held[i] = held[--held_count];
            return size;
        }
    }
    return not_held;
}

WatchedCalls::WatchedCalls(const Failure &failure)
{
    for (const FallibleCall &row : fallible_calls()) {
        first_errors[static_cast<std::size_t>(row.call)] = row.errors.front();
    }
    chosen = failure;
    seen = {};
    calls_in_all = 0;
    watching = true;
}

WatchedCalls::~WatchedCalls()
{
    watching = false;
}

const CallsSeen &calls_seen()
{
    return seen;
}

std::size_t things_held()
{
    return held_count;
}

// The symbols that the linker's option --wrap makes of the names of the calls. Records of the
// system, which differ by its width, pass as bare pointers.
#define WRAPPED(result_type, name, parameters, arguments, call, failed)                            \
    result_type __real_##name parameters;                                                          \
    result_type __wrap_##name parameters;                                                          \
    result_type __wrap_##name parameters                                                           \
    {                                                                                              \
        if (fails(Call::call)) {                                                                   \
            return failed;                                                                         \
        }                                                                                          \
        const Unwatched own_calls;                                                                 \
        return __real_##name arguments;                                                            \
    }

#define WRAPPED_OPENER(name, parameters, arguments, call)                                          \
    void *__real_##name parameters;                                                                \
    void *__wrap_##name parameters;                                                                \
    void *__wrap_##name parameters                                                                 \
    {                                                                                              \
        if (fails(Call::call)) {                                                                   \
            return nullptr;                                                                        \
        }                                                                                          \
        void *thing;                                                                               \
        {                                                                                          \
            const Unwatched own_calls;                                                             \
            thing = __real_##name arguments;                                                       \
        }                                                                                          \
        return hold(thing);                                                                        \
    }

// What fails to close is closed all the same.
#define WRAPPED_CLOSER(type, name, call)                                                           \
    int __real_##name(type thing);                                                                 \
    int __wrap_##name(type thing);                                                                 \
    int __wrap_##name(type thing)                                                                  \
    {                                                                                              \
        const bool failing = fails(Call::call);                                                    \
        const int reason = errno;                                                                  \
        const Unwatched own_calls;                                                                 \
        let_go(as_held(thing));                                                                    \
        const int result = __real_##name(thing);                                                   \
        if (failing) {                                                                             \
            errno = reason;                                                                        \
        }                                                                                          \
        return failing ? -1 : result;                                                              \
    }

namespace {

const void *as_held(void *thing)
{
    return thing;
}

const void *as_held(int)
{
    return nullptr; // descriptors are counted by the system
}

} // namespace

extern "C" {

WRAPPED(int, socket, (int family, int type, int protocol), (family, type, protocol), Socket, -1)
WRAPPED(void *, gethostbyname, (const char *name), (name), Lookup, nullptr)
WRAPPED(int, madvise, (void *start, std::size_t count, int advice), (start, count, advice), Advise,
        -1)
WRAPPED(int, connect, (int descriptor, const void *address, socklen_t size),
        (descriptor, address, size), Connect, -1)
WRAPPED(int, setsockopt, (int descriptor, int level, int option, const void *value, socklen_t size),
        (descriptor, level, option, value, size), SetOption, -1)
WRAPPED(int, shutdown, (int descriptor, int how), (descriptor, how), Shutdown, -1)
WRAPPED(int, select, (int width, void *reading, void *writing, void *others, void *limit),
        (width, reading, writing, others, limit), Select, -1)
WRAPPED(int, ioctl, (int descriptor, unsigned long request, void *argument),
        (descriptor, request, argument), Control, -1)
WRAPPED(ssize_t, recv, (int descriptor, void *buffer, std::size_t size, int flags),
        (descriptor, buffer, size, flags), Receive, -1)
WRAPPED(int, chmod, (const char *path, unsigned mode), (path, mode), Chmod, -1)
WRAPPED(int, stat, (const char *path, void *status), (path, status), Stat, -1)
WRAPPED(int, stat64, (const char *path, void *status), (path, status), Stat, -1)
WRAPPED(int, lstat, (const char *path, void *status), (path, status), Lstat, -1)
WRAPPED(int, lstat64, (const char *path, void *status), (path, status), Lstat, -1)
WRAPPED(int, unlink, (const char *path), (path), Unlink, -1)
WRAPPED(int, rmdir, (const char *path), (path), Rmdir, -1)
WRAPPED(void *, readdir, (void *directory), (directory), Readdir, nullptr)
WRAPPED(void *, readdir64, (void *directory), (directory), Readdir, nullptr)
WRAPPED(int, gethostname, (char *buffer, std::size_t size), (buffer, size), Hostname, -1)
WRAPPED(int, nanosleep, (const void *time, void *rest), (time, rest), Sleep, -1)
WRAPPED(int, gettimeofday, (void *time, void *zone), (time, zone), Clock, -1)
WRAPPED(void *, localtime, (const void *time), (time), Localtime, nullptr)
WRAPPED(char *, ctime_r, (const void *time, char *buffer), (time, buffer), Ctime, nullptr)
WRAPPED(std::size_t, fread, (void *buffer, std::size_t size, std::size_t count, std::FILE *file),
        (buffer, size, count, file), Fread, 0)
WRAPPED(std::size_t, fwrite,
        (const void *bytes, std::size_t size, std::size_t count, std::FILE *file),
        (bytes, size, count, file), Print, 0)
WRAPPED(int, fputs, (const char *text, std::FILE *file), (text, file), Print, EOF)
WRAPPED(int, fputc, (int c, std::FILE *file), (c, file), Print, EOF)
WRAPPED(int, putc, (int c, std::FILE *file), (c, file), Print, EOF)
WRAPPED(int, putchar, (int c), (c), Print, EOF)
WRAPPED(int, puts, (const char *text), (text), Print, EOF)
WRAPPED(int, fflush, (std::FILE * file), (file), Flush, EOF)
WRAPPED(int, vsnprintf,
        (char *buffer, std::size_t size, const char *format, std::va_list arguments),
        (buffer, size, format, arguments), Format, -1)
#if defined(_TIME_BITS) // the variants with times of 64 bits, in 32-bit programs
WRAPPED(int, __setsockopt64,
        (int descriptor, int level, int option, const void *value, socklen_t size),
        (descriptor, level, option, value, size), SetOption, -1)
WRAPPED(int, __select64, (int width, void *reading, void *writing, void *others, void *limit),
        (width, reading, writing, others, limit), Select, -1)
WRAPPED(int, __ioctl_time64, (int descriptor, unsigned long request, void *argument),
        (descriptor, request, argument), Control, -1)
WRAPPED(int, __stat64_time64, (const char *path, void *status), (path, status), Stat, -1)
WRAPPED(int, __lstat64_time64, (const char *path, void *status), (path, status), Lstat, -1)
WRAPPED(int, __nanosleep64, (const void *time, void *rest), (time, rest), Sleep, -1)
WRAPPED(int, __gettimeofday64, (void *time, void *zone), (time, zone), Clock, -1)
WRAPPED(void *, __localtime64, (const void *time), (time), Localtime, nullptr)
WRAPPED(char *, __ctime64_r, (const void *time, char *buffer), (time, buffer), Ctime, nullptr)
#endif
// The variants that check sizes, in builds with _FORTIFY_SOURCE.
WRAPPED(int, __vsnprintf_chk,
        (char *buffer, std::size_t size, int flag, std::size_t room, const char *format,
         std::va_list arguments),
        (buffer, size, flag, room, format, arguments), Format, -1)
WRAPPED(std::size_t, __fread_chk,
        (void *buffer, std::size_t room, std::size_t size, std::size_t count, std::FILE *file),
        (buffer, room, size, count, file), Fread, 0)
WRAPPED(int, __gethostname_chk, (char *buffer, std::size_t size, std::size_t room),
        (buffer, size, room), Hostname, -1)

WRAPPED_OPENER(fopen, (const char *path, const char *mode), (path, mode), Fopen)
WRAPPED_OPENER(fopen64, (const char *path, const char *mode), (path, mode), Fopen)
WRAPPED_OPENER(opendir, (const char *path), (path), Opendir)
WRAPPED_CLOSER(std::FILE *, fclose, Fclose)
WRAPPED_CLOSER(DIR *, closedir, Closedir)
WRAPPED_CLOSER(int, close, Close)

ssize_t __real_send(int descriptor, const void *bytes, std::size_t size, int flags);
ssize_t __wrap_send(int descriptor, const void *bytes, std::size_t size, int flags);
#if defined(_TIME_BITS)
#define REAL_TIME __real___time64
#define WRAP_TIME __wrap___time64
#else
#define REAL_TIME __real_time
#define WRAP_TIME __wrap_time
#endif
std::time_t REAL_TIME(std::time_t *result);
std::time_t WRAP_TIME(std::time_t *result);
[[gnu::format(printf, 1, 2)]] int __wrap_printf(const char *format, ...);
[[gnu::format(printf, 2, 3)]] int __wrap_fprintf(std::FILE *file, const char *format, ...);
[[gnu::format(printf, 3, 4)]] int __wrap_snprintf(char *buffer, std::size_t size,
                                                  const char *format, ...);
[[gnu::format(printf, 2, 3)]] int __wrap___printf_chk(int flag, const char *format, ...);
[[gnu::format(printf, 3, 4)]] int __wrap___fprintf_chk(std::FILE *file, int flag,
                                                       const char *format, ...);
[[gnu::format(printf, 5, 6)]] int __wrap___snprintf_chk(char *buffer, std::size_t size, int flag,
                                                        std::size_t room, const char *format, ...);
ssize_t __wrap___recv_chk(int descriptor, void *buffer, std::size_t size, std::size_t room,
                          int flags);

ssize_t __wrap_send(int descriptor, const void *bytes, std::size_t size, int flags)
{
    if (fails(Call::Send)) {
        return -1;
    }
    const bool was_watching = watching;
    const Unwatched own_calls;
    const std::size_t most = was_watching ? std::min(size, failing_calls.send_at_most) : size;
    const ssize_t taken = __real_send(descriptor, bytes, most, flags);
    if (was_watching && taken > 0) {
        seen.bytes_taken += static_cast<std::size_t>(taken);
    }
    return taken;
}

std::time_t WRAP_TIME(std::time_t *result)
{
    const bool was_watching = watching;
    if (fails(Call::Time)) {
        return -1;
    }
    const std::time_t now = was_watching ? failing_calls.now : REAL_TIME(nullptr);
    if (result != nullptr) {
        *result = now;
    }
    return now;
}

// Each variadic call ends in its sibling with a list of arguments.
#define FORMATTED(call, before, expression)                                                        \
    if (fails(Call::call)) {                                                                       \
        return -1;                                                                                 \
    }                                                                                              \
    const Unwatched own_calls;                                                                     \
    std::va_list arguments;                                                                        \
    va_start(arguments, before);                                                                   \
    const int result = expression;                                                                 \
    va_end(arguments);                                                                             \
    return result

int __wrap_printf(const char *format, ...)
{
    FORMATTED(Print, format, std::vprintf(format, arguments));
}

int __wrap_fprintf(std::FILE *file, const char *format, ...)
{
    FORMATTED(Print, format, std::vfprintf(file, format, arguments));
}

int __wrap_snprintf(char *buffer, std::size_t size, const char *format, ...)
{
    FORMATTED(Format, format, __real_vsnprintf(buffer, size, format, arguments));
}

int __wrap___printf_chk(int, const char *format, ...)
{
    FORMATTED(Print, format, std::vprintf(format, arguments));
}

int __wrap___fprintf_chk(std::FILE *file, int, const char *format, ...)
{
    FORMATTED(Print, format, std::vfprintf(file, format, arguments));
}

int __wrap___snprintf_chk(char *buffer, std::size_t size, int flag, std::size_t room,
                          const char *format, ...)
{
    FORMATTED(Format, format, __real___vsnprintf_chk(buffer, size, flag, room, format, arguments));
}

ssize_t __wrap___recv_chk(int descriptor, void *buffer, std::size_t size, std::size_t, int flags)
{
    return __wrap_recv(descriptor, buffer, size, flags);
}

} // extern "C"
