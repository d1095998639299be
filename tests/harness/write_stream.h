/// \file
/// A stream whose writes are a function of the test: fopencookie() or funopen(), whichever the
/// system has.
#pragma once

#include <cstddef>
#include <cstdio>

/// \return a stream for writing, which the caller closes; null without memory.
/// \param write receives each piece that the C library writes; its bytes count as written
std::FILE *open_write_stream(void *cookie,
                             void (*write)(void *cookie, const char *bytes, std::size_t count));
