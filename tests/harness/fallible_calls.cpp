// The calls that can fail, with what they document, as POSIX and the Linux manual pages have it. A
// call of the system has EINTR also where they leave it out: some file systems and systems give it.
// fclose has what the write of the rest can meet.
#include <cerrno>
#include <netdb.h>

#include "tests/harness/failing_calls.h"

const std::array<FallibleCall, call_count> &fallible_calls()
{
    static const std::array<FallibleCall, call_count> calls = {{
        {Call::Malloc, {"malloc"}, {ENOMEM}},
        {Call::Realloc, {"realloc"}, {ENOMEM}},
        {Call::Advise, {"madvise"}, {EACCES, EAGAIN, EBADF, EFAULT, EINVAL, EIO, ENOMEM, EPERM}},
        {Call::New, {"operator new"}, {ENOMEM}},
        {Call::Socket,
         {"socket"},
         {EACCES, EAFNOSUPPORT, EINTR, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT,
          EPROTOTYPE}},
        // Its errors are values of h_errno, which has these four and no interruption.
        {Call::Lookup, {"gethostbyname"}, {HOST_NOT_FOUND, NO_DATA, NO_RECOVERY, TRY_AGAIN}},
        {Call::Connect,
         {"connect"},
         {EACCES,   EADDRINUSE,   EADDRNOTAVAIL, EAFNOSUPPORT, EAGAIN,       EALREADY,
          EBADF,    ECONNREFUSED, ECONNRESET,    EFAULT,       EHOSTUNREACH, EINPROGRESS,
          EINTR,    EINVAL,       EISCONN,       ENETDOWN,     ENETUNREACH,  ENOBUFS,
          ENOTSOCK, EOPNOTSUPP,   EPERM,         EPROTOTYPE,   ETIMEDOUT}},
        {Call::SetOption,
         {"setsockopt"},
         {EBADF, EDOM, EFAULT, EINTR, EINVAL, EISCONN, ENOBUFS, ENOMEM, ENOPROTOOPT, ENOTSOCK}},
        {Call::Send, {"send"}, {EACCES,       EAGAIN,   EALREADY, EBADF,       ECONNRESET,
                                EDESTADDRREQ, EFAULT,   EINTR,    EINVAL,      EIO,
                                EISCONN,      EMSGSIZE, ENETDOWN, ENETUNREACH, ENOBUFS,
                                ENOMEM,       ENOTCONN, ENOTSOCK, EOPNOTSUPP,  EPIPE}},
        {Call::Shutdown, {"shutdown"}, {EBADF, EINTR, EINVAL, ENOBUFS, ENOTCONN, ENOTSOCK}},
        {Call::Select, {"select"}, {EBADF, EINTR, EINVAL, ENOMEM}},
        {Call::Control, {"ioctl"}, {EBADF, EFAULT, EINTR, EINVAL, ENOTTY}},
        {Call::Receive,
         {"recv"},
         {EAGAIN, EBADF, ECONNREFUSED, ECONNRESET, EFAULT, EINTR, EINVAL, EIO, ENOBUFS, ENOMEM,
          ENOTCONN, ENOTSOCK, EOPNOTSUPP, ETIMEDOUT}},
        {Call::Close, {"close"}, {EBADF, EDQUOT, EINTR, EIO, ENOSPC}},
        {Call::Fopen, {"fopen"}, {EACCES,    EDQUOT, EEXIST, EFAULT, EFBIG,        EINTR,
                                  EINVAL,    EISDIR, ELOOP,  EMFILE, ENAMETOOLONG, ENFILE,
                                  ENODEV,    ENOENT, ENOMEM, ENOSPC, ENOTDIR,      ENXIO,
                                  EOVERFLOW, EPERM,  EROFS,  ETXTBSY}},
        {Call::Fread, {"fread"}, {EAGAIN, EBADF, EINTR, EIO, EISDIR, ENOMEM, ENXIO, EOVERFLOW}},
        {Call::Fclose,
         {"fclose"},
         {EAGAIN, EBADF, EDESTADDRREQ, EDQUOT, EFAULT, EFBIG, EINTR, EINVAL, EIO, ENOMEM, ENOSPC,
          ENXIO, EPERM, EPIPE}},
        {Call::Chmod,
         {"chmod"},
         {EACCES, EFAULT, EINTR, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM,
          EROFS}},
        {Call::Stat,
         {"stat"},
         {EACCES, EFAULT, EINTR, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}},
        {Call::Lstat,
         {"lstat"},
         {EACCES, EFAULT, EINTR, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}},
        {Call::Unlink,
         {"unlink"},
         {EACCES, EBUSY, EFAULT, EINTR, EIO, EISDIR, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR,
          EPERM, EROFS, ETXTBSY}},
        {Call::Rmdir,
         {"rmdir"},
         {EACCES, EBUSY, EEXIST, EFAULT, EINTR, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM,
          ENOTDIR, ENOTEMPTY, EPERM, EROFS}},
        {Call::Opendir,
         {"opendir"},
         {EACCES, EBADF, EINTR, ELOOP, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM, ENOTDIR}},
        {Call::Readdir, {"readdir"}, {EBADF, EFAULT, EINTR, EINVAL, ENOENT, ENOTDIR, EOVERFLOW}},
        {Call::Closedir, {"closedir"}, {EBADF, EINTR}},
        {Call::Hostname, {"gethostname"}, {EFAULT, EINTR, EINVAL, ENAMETOOLONG, EPERM}},
        {Call::Sleep, {"nanosleep"}, {EFAULT, EINTR, EINVAL}},
        {Call::Clock, {"gettimeofday"}, {EFAULT}},
        {Call::Time, {"time"}, {EFAULT, EOVERFLOW}},
        {Call::Localtime, {"localtime"}, {EOVERFLOW}},
        {Call::Ctime, {"ctime_r"}, {EOVERFLOW}},
        {Call::Format, {"vsnprintf", "snprintf"}, {EILSEQ, ENOMEM, EOVERFLOW}},
        {Call::Print,
         {"fwrite", "fputs", "fputc", "putc", "putchar", "puts", "printf", "fprintf"},
         {EAGAIN, EBADF, EFBIG, EILSEQ, EINTR, EIO, ENOMEM, ENOSPC, ENXIO, EPIPE}},
        {Call::Flush, {"fflush"}, {EAGAIN, EBADF, EFBIG, EINTR, EIO, ENOMEM, ENOSPC, ENXIO, EPIPE}},
    }};
    return calls;
}

const FallibleCall &fallible(Call call)
{
    return fallible_calls()[static_cast<std::size_t>(call)];
}

const std::string &name_of(Call call)
{
    return fallible(call).symbols.front();
}
