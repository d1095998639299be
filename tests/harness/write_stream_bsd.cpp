#include "tests/harness/write_stream.h"

namespace {

struct WriteStream {
    void *cookie;
    void (*write)(void *, const char *, std::size_t);
};

int write_piece(void *stream, const char *bytes, int count)
{
    const auto *const target = static_cast<WriteStream *>(stream);
    target->write(target->cookie, bytes, static_cast<std::size_t>(count));
    return count;
}

int close_stream(void *stream)
{
    delete static_cast<WriteStream *>(stream);
    return 0;
}

} // namespace

std::FILE *open_write_stream(void *cookie, void (*write)(void *, const char *, std::size_t))
{
    return funopen(new WriteStream{cookie, write}, nullptr, write_piece, nullptr, close_stream);
}
