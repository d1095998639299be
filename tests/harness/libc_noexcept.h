/// \file
/// For definitions that replace functions of the C library: the noexcept clause that the
/// system's own declaration has. glibc's headers have one, others do not.
#pragma once

#include <cstddef>

#ifdef __GLIBC__
#define LIBC_NOEXCEPT noexcept
#else
#define LIBC_NOEXCEPT
#endif
