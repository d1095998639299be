// The linker routes the calls of malloc() and realloc() in this program's objects through the two
// functions below, so that sizes can be seen and single requests be refused.
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <typeinfo>

#include "support/error.h"
#include "tests/harness/capture.h"

namespace {

struct Requests {
    bool watching;
    bool refusing;
    int count;
    std::size_t last_size;
};

Requests requests;

bool note_request(std::size_t size)
{
    if (requests.watching) {
        ++requests.count;
        requests.last_size = size;
    }
    return !requests.refusing;
}

} // namespace

// The names that the linker's option --wrap gives to malloc() and realloc().
extern "C" void *__real_malloc(std::size_t size);
extern "C" void *__real_realloc(void *pointer, std::size_t size);
extern "C" void *__wrap_malloc(std::size_t size);
extern "C" void *__wrap_realloc(void *pointer, std::size_t size);

void *__wrap_malloc(std::size_t size)
{
    return note_request(size) ? __real_malloc(size) : nullptr;
}

void *__wrap_realloc(void *pointer, std::size_t size)
{
    return note_request(size) ? __real_realloc(pointer, size) : nullptr;
}

// Lets AddressSanitizer refuse a request that is too large instead of ending the program.
extern "C" const char *__asan_default_options();

const char *__asan_default_options()
{
    // With 32 bits it would give half of all addresses, which no system's own allocator does.
    return "allocator_may_return_null=1:max_allocation_size_mb=2047";
}

namespace {

constexpr std::size_t beyond_memory = SIZE_MAX / 2 + 1;

/// Runs \p action with every request noted, and refused if \p refusing says so.
template <typename Action> Requests watch(Action action, bool refusing = false)
{
    requests = {true, refusing, 0, 0};
    action();
    const Requests seen = requests;
    requests = {};
    return seen;
}

/// \return whether \p action ended in exactly std::bad_alloc while memory was refused.
template <typename Action> bool throws_when_refused(Action action)
{
    bool exhausted = false;
    watch(
        [&] {
            try {
                action();
            } catch (const std::bad_alloc &error) {
                exhausted = typeid(error) == typeid(std::bad_alloc);
            }
        },
        true);
    return exhausted;
}

TEST(CheckedMalloc, ReturnsNullForSizeZeroWithoutAllocating)
{
    void *block = &requests;
    EXPECT_EQ(watch([&] { block = checked_malloc(0); }).count, 0);
    EXPECT_EQ(block, nullptr);
}

TEST(CheckedMalloc, ReturnsNullForSizeZeroAlsoWhenMemoryIsExhausted)
{
    EXPECT_FALSE(throws_when_refused([] { checked_malloc(0); }));
}

TEST(CheckedMalloc, AllocatesExactlyTheSizeAskedFor)
{
    for (const std::size_t size : {1U, 2U, 72U, 1023U, 4096U, 10'000'000U}) {
        void *block = nullptr;
        const Requests seen = watch([&] { block = checked_malloc(size); });
        EXPECT_EQ(seen.count, 1) << size;
        EXPECT_EQ(seen.last_size, size);
        ASSERT_NE(block, nullptr);
        std::memset(block, 0xa5, size);
        checked_free(block);
    }
}

TEST(CheckedMalloc, ThrowsBadAllocWhenMemoryIsExhausted)
{
    EXPECT_TRUE(throws_when_refused([] { checked_malloc(1); }));
    EXPECT_TRUE(throws_when_refused([] { checked_malloc(100000); }));
}

TEST(CheckedMalloc, ThrowsBadAllocForSizesThatNoMemoryHolds)
{
    for (const std::size_t size : {beyond_memory, beyond_memory + 1, SIZE_MAX - 1, SIZE_MAX}) {
        EXPECT_THROW(checked_malloc(size), std::bad_alloc) << size;
    }
}

TEST(CheckedMalloc, AllocatesAgainAfterAFailure)
{
    EXPECT_TRUE(throws_when_refused([] { checked_malloc(10); }));
    void *block = checked_malloc(10);
    EXPECT_NE(block, nullptr);
    checked_free(block);
}

TEST(CheckedRealloc, OfNullAllocates)
{
    void *block = nullptr;
    const Requests seen = watch([&] { block = checked_realloc(nullptr, 0, 72); });
    EXPECT_EQ(seen.last_size, 72U);
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xa5, 72);
    checked_free(block);
}

TEST(CheckedRealloc, KeepsTheContentUpToTheSmallerSize)
{
    char *block = static_cast<char *>(checked_malloc(72));
    std::memset(block, 'x', 72);
    block = static_cast<char *>(checked_realloc(block, 72, 144));
    EXPECT_EQ(std::string(block, 72), std::string(72, 'x'));
    std::memset(block, 'y', 144);
    block = static_cast<char *>(checked_realloc(block, 144, 1'000'000));
    EXPECT_EQ(std::string(block, 144), std::string(144, 'y'));
    block = static_cast<char *>(checked_realloc(block, 1'000'000, 10));
    EXPECT_EQ(std::string(block, 10), std::string(10, 'y'));
    checked_free(block);
}

TEST(CheckedRealloc, DoesNotUseTheOldSize)
{
    char *block = static_cast<char *>(checked_malloc(4));
    std::memcpy(block, "abc", 4);
    for (const std::size_t told : {std::size_t{0}, std::size_t{1}, SIZE_MAX}) {
        block = static_cast<char *>(checked_realloc(block, told, 100));
        EXPECT_STREQ(block, "abc");
    }
    checked_free(block);
}

TEST(CheckedRealloc, ThrowsBadAllocAndLeavesTheOldBlockToTheCaller)
{
    char *block = static_cast<char *>(checked_malloc(8));
    std::memcpy(block, "content", 8);
    EXPECT_TRUE(throws_when_refused([&] { checked_realloc(block, 8, 16); }));
    EXPECT_STREQ(block, "content");
    for (const std::size_t size : {beyond_memory, SIZE_MAX - 1, SIZE_MAX}) {
        EXPECT_THROW(checked_realloc(block, 8, size), std::bad_alloc) << size;
        EXPECT_STREQ(block, "content");
    }
    checked_free(block);
}

TEST(CheckedRealloc, OfNullThrowsBadAllocWhenMemoryIsExhausted)
{
    EXPECT_TRUE(throws_when_refused([] { checked_realloc(nullptr, 0, 72); }));
    EXPECT_THROW(checked_realloc(nullptr, 0, SIZE_MAX), std::bad_alloc);
}

TEST(CheckedRealloc, NeverReturnsNullForANewSizeOfZero)
{
    void *block = checked_realloc(checked_malloc(10), 10, 0);
    EXPECT_NE(block, nullptr);
    checked_free(block);
    block = checked_realloc(nullptr, 0, 0);
    EXPECT_NE(block, nullptr);
    checked_free(block);
}

TEST(CheckedRealloc, ToSizeZeroLeavesTheOldBlockValidWhenMemoryIsExhausted)
{
    char *block = static_cast<char *>(checked_malloc(8));
    std::memcpy(block, "content", 8);
    EXPECT_TRUE(throws_when_refused([&] { checked_realloc(block, 8, 0); }));
    EXPECT_STREQ(block, "content");
    checked_free(block);
}

struct CopyCase {
    const char *text;
    std::size_t extra;
    std::size_t size;
};

const CopyCase copy_cases[] = {
    {"", 0, 1}, {"", 10, 11}, {"a", 0, 2}, {"abc", 1, 5}, {"\x80\xff%s\n", 1000, 1006},
};

TEST(CheckedStrdup, AllocatesTheTextTheExtraBytesAndTheNul)
{
    for (const CopyCase &c : copy_cases) {
        char *copy = nullptr;
        const Requests seen = watch([&] { copy = checked_strdup(c.text, c.extra); });
        EXPECT_EQ(seen.count, 1);
        EXPECT_EQ(seen.last_size, c.size);
        EXPECT_STREQ(copy, c.text);
        std::memset(copy, 'x', c.size);
        checked_free(copy);
    }
}

TEST(CheckedStrdup, OfAnEmptyTextStartsWithNul)
{
    char *copy = checked_strdup("", 10);
    EXPECT_EQ(copy[0], '\0');
    checked_free(copy);
}

TEST(CheckedStrdup, LeavesItsTextAlone)
{
    std::string text = "text";
    char *copy = checked_strdup(text.c_str(), 3);
    EXPECT_NE(copy, text.c_str());
    copy[0] = 'n';
    EXPECT_EQ(text, "text");
    checked_free(copy);
}

TEST(CheckedStrdup, ThrowsBadAllocWhenMemoryIsExhausted)
{
    EXPECT_TRUE(throws_when_refused([] { checked_strdup("", 0); }));
    EXPECT_TRUE(throws_when_refused([] { checked_strdup("text", 10); }));
}

TEST(CheckedStrdup, ThrowsBadAllocForExtrasThatNoMemoryHolds)
{
    for (const std::size_t extra : {beyond_memory, SIZE_MAX - 1 - 4, SIZE_MAX - 1}) {
        EXPECT_THROW(checked_strdup("", extra), std::bad_alloc) << extra;
    }
    EXPECT_THROW(checked_strdup("text", SIZE_MAX - 5), std::bad_alloc);
}

TEST(CheckedStrdup, ThrowsBadAllocWithoutAllocatingWhenTheSizeWouldWrap)
{
    // 4 characters, the NUL, and so many more that the sum comes out at 0, 1, 2, 3 or 4.
    for (std::size_t below = 0; below <= 4; ++below) {
        const Requests seen =
            watch([&] { EXPECT_THROW(checked_strdup("text", SIZE_MAX - below), std::bad_alloc); });
        EXPECT_EQ(seen.count, 0) << below;
    }
    EXPECT_THROW(checked_strdup("", SIZE_MAX), std::bad_alloc);
}

TEST(CheckedFree, DoesNothingForNull)
{
    checked_free(nullptr);
    checked_free(nullptr);
}

TEST(CheckedBlocks, AreOrdinaryBlocksOfTheSystem)
{
    std::free(checked_malloc(10));
    std::free(checked_realloc(nullptr, 0, 10));
    std::free(checked_strdup("text", 1));
    void *block = std::malloc(10);
    checked_free(checked_realloc(block, 10, 20));
    checked_free(std::calloc(1, 10));
}

TEST(ExhaustedMemory, IsNeverReportedAsAMessage)
{
    const std::int32_t before = message_count();
    const CapturedOutput output = capture_output([] {
        throws_when_refused([] { checked_malloc(1); });
        throws_when_refused([] { checked_realloc(nullptr, 0, 1); });
        throws_when_refused([] { checked_strdup("text", 0); });
    });
    EXPECT_EQ(output.err + output.out, "");
    EXPECT_EQ(message_count(), before);
}

TEST(ExhaustedMemory, CarriesTheStandardText)
{
    try {
        checked_malloc(SIZE_MAX);
        ADD_FAILURE();
    } catch (const std::exception &error) {
        EXPECT_STREQ(error.what(), std::bad_alloc().what());
    }
}

TEST(ExhaustedMemory, EndsTheProcessWhenNobodyCatches)
{
    const ChildResult children[] = {
        run_in_child([] { checked_malloc(SIZE_MAX); }),
        run_in_child([] { checked_realloc(nullptr, 0, SIZE_MAX); }),
        run_in_child([] { checked_strdup("text", SIZE_MAX); }),
    };
    for (const ChildResult &child : children) {
        EXPECT_EQ(child.exit_status, -1);
        EXPECT_EQ(child.signal, SIGABRT);
    }
}

} // namespace
