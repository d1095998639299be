/// \file
/// What a large reply costs in memory, measured in a process that does nothing else.
/// Tests web/fresh_memory_linux.cpp and web/fresh_memory_none.cpp.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>

#include "tests/harness/capture.h"
#include "tests/harness/real_servers.h"
#include "web/web.h"

#if defined(__SANITIZE_ADDRESS__)
#define MEMORY_TEST_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MEMORY_TEST_UNDER_ASAN 1
#endif
#endif

namespace {

constexpr std::size_t mebibyte = std::size_t(1) << 20;

/// The blocks of a mebibyte or more that the heap has given and not got back.
int large_blocks = 0;
int most_large_blocks = 0;

} // namespace

#if defined(__GLIBC__) && !defined(MEMORY_TEST_UNDER_ASAN)
#define MEMORY_TEST_COUNTS_BLOCKS 1

#include <malloc.h>

extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void *__libc_realloc(void *pointer, std::size_t size);
extern "C" void __libc_free(void *pointer);

namespace {

bool is_large(void *block)
{
    return block != nullptr && malloc_usable_size(block) >= mebibyte;
}

void *counted(void *block)
{
    if (is_large(block)) {
        ++large_blocks;
        most_large_blocks = large_blocks > most_large_blocks ? large_blocks : most_large_blocks;
    }
    return block;
}

} // namespace

extern "C" void *malloc(std::size_t size) noexcept
{
    return counted(__libc_malloc(size));
}

extern "C" void *calloc(std::size_t count, std::size_t size) noexcept
{
    return counted(__libc_calloc(count, size));
}

extern "C" void *realloc(void *pointer, std::size_t size) noexcept
{
    const bool was_large = is_large(pointer);
    void *const block = __libc_realloc(pointer, size);
    if (was_large && (block != nullptr || size == 0)) {
        --large_blocks;
    }
    return counted(block);
}

extern "C" void free(void *pointer) noexcept
{
    if (is_large(pointer)) {
        --large_blocks;
    }
    __libc_free(pointer);
}

#endif

namespace {

/// nginx with "large.bin", of so many mebibytes.
class LargeFileServer : public NginxServer {
public:
    explicit LargeFileServer(std::size_t mebibytes)
    {
        const std::string piece(mebibyte, 'x');
        for (std::size_t i = 0; i < mebibytes; ++i) {
            add_file("large.bin", piece);
        }
    }
};

/// The greatest resident size that this process has had, in bytes.
std::size_t peak_resident()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    return static_cast<std::size_t>(usage.ru_maxrss);
#else
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
#endif
}

/// What one transaction did to the memory of a process of its own.
struct MemoryUse {
    std::size_t body_size = 0;
    std::size_t peak_growth = 0;
    std::size_t block_size = 0; ///< of the body, where the system tells
    int most_large_blocks = 0;  ///< at the same time
};

/// Runs in the child, and prints what it has measured.
void get_and_measure(const std::string &url)
{
    MemoryUse use;
    char *header = nullptr;
    char *body = nullptr;
    large_blocks = most_large_blocks = 0;
    const std::size_t before = peak_resident();
    const int result =
        web_request(url.c_str(), "GET", 0, nullptr, &header, &body, nullptr, 0, nullptr, nullptr);
    use.peak_growth = peak_resident() - before;
    use.most_large_blocks = most_large_blocks;
    if (result != 0) {
        std::printf("%d: %s", result, web_last_error());
        return;
    }
#ifdef MEMORY_TEST_COUNTS_BLOCKS
    use.block_size = malloc_usable_size(body);
#endif
    use.body_size = std::strlen(body);
    std::printf("%zu %zu %zu %d", use.body_size, use.peak_growth, use.block_size,
                use.most_large_blocks);
}

MemoryUse use_of_large_file(std::size_t mebibytes)
{
    const LargeFileServer nginx(mebibytes);
    const std::string url = nginx.url("/large.bin");
    const ChildResult child = run_in_child([&url] { get_and_measure(url); }, 90);
    MemoryUse use;
    EXPECT_EQ(std::sscanf(child.out.c_str(), "%zu %zu %zu %d", &use.body_size, &use.peak_growth,
                          &use.block_size, &use.most_large_blocks),
              4)
        << child.out << child.err << "\nsignal " << child.signal;
    EXPECT_EQ(use.body_size, mebibytes * mebibyte);
    return use;
}

bool memory_is_measured()
{
#ifdef MEMORY_TEST_UNDER_ASAN
    return false;
#else
    return true;
#endif
}

bool blocks_are_counted()
{
#ifdef MEMORY_TEST_COUNTS_BLOCKS
    return true;
#else
    return false;
#endif
}

} // namespace

TEST(ReplyMemory, IsLittleMoreThanTheBody)
{
    if (!memory_is_measured()) {
        GTEST_SKIP() << "the sanitizer needs memory of its own";
    }
    // At some sizes a text that grows in steps has just grown, at others it is nearly full.
    for (const std::size_t mebibytes : {100u, 128u}) {
        const MemoryUse use = use_of_large_file(mebibytes);
        EXPECT_LE(use.peak_growth, use.body_size + use.body_size / 20) << mebibytes;
        EXPECT_GE(use.peak_growth, use.body_size - use.body_size / 20) << "it is not measured";
    }
}

TEST(ReplyMemory, IsOneLargeBlockAtATimeThatIsCutToTheBody)
{
    if (!blocks_are_counted()) {
        GTEST_SKIP() << "the blocks of this heap cannot be counted";
    }
    for (const std::size_t mebibytes : {100u, 128u}) {
        const MemoryUse use = use_of_large_file(mebibytes);
        EXPECT_EQ(use.most_large_blocks, 1) << mebibytes;
        EXPECT_GT(use.block_size, use.body_size) << mebibytes;
        EXPECT_LT(use.block_size, use.body_size + 16384) << "more than a few pages to spare";
    }
}
