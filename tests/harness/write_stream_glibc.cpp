#include <sys/types.h>

#include "tests/harness/write_stream.h"

namespace {

struct WriteStream {
    void *cookie;
    void (*write)(void *, const char *, std::size_t);
};

ssize_t write_piece(void *stream, const char *bytes, std::size_t count)
{
    const auto *const target = static_cast<WriteStream *>(stream);
    target->write(target->cookie, bytes, count);
    return static_cast<ssize_t>(count);
}

int close_stream(void *stream)
{
    delete static_cast<WriteStream *>(stream);
    return 0;
}

} // namespace

std::FILE *open_write_stream(void *cookie, void (*write)(void *, const char *, std::size_t))
{
    return fopencookie(new WriteStream{cookie, write}, "w",
                       {nullptr, write_piece, nullptr, close_stream});
}
