// Counts every heap allocation of the process, those inside the system's library included: with
// this program's own malloc(), calloc() and realloc(), or by the hooks of AddressSanitizer, which
// does not let its allocator be replaced.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/support/error/facility_test.h"

#if defined(__SANITIZE_ADDRESS__)
#define HEAP_TEST_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HEAP_TEST_UNDER_ASAN 1
#endif
#endif

namespace {

volatile bool counting;
volatile int allocations;

void note_allocation()
{
    if (counting) {
        allocations = allocations + 1;
    }
}

} // namespace

#if defined(HEAP_TEST_UNDER_ASAN)

// Declared here because not every compiler brings the sanitizer's header along.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*malloc_hook)(const volatile void *,
                                                                             std::size_t),
                                                         void (*free_hook)(const volatile void *));

namespace {

void note_malloc(const volatile void *, std::size_t)
{
    note_allocation();
}

void note_free(const volatile void *) {}

[[maybe_unused]] const int hooks_installed =
    __sanitizer_install_malloc_and_free_hooks(note_malloc, note_free);

} // namespace

#else

extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void *__libc_realloc(void *pointer, std::size_t size);

extern "C" void *malloc(std::size_t size) noexcept
{
    note_allocation();
    return __libc_malloc(size);
}

extern "C" void *calloc(std::size_t count, std::size_t size) noexcept
{
    note_allocation();
    return __libc_calloc(count, size);
}

extern "C" void *realloc(void *pointer, std::size_t size) noexcept
{
    note_allocation();
    return __libc_realloc(pointer, size);
}

#endif

namespace {

const std::string long_text(70000, '\n');

/// \return the allocations of \p action's second run; the first may warm the system's library up
/// (its streams and its time zone).
template <typename Action> int allocations_of(Action action)
{
    int seen = 0;
    capture_output([&] {
        action();
        allocations = 0;
        counting = true;
        action();
        counting = false;
        seen = allocations;
    });
    return seen;
}

class HeapUse : public FacilityTest {};

TEST_F(HeapUse, IsSeenByTheCounter)
{
    static void *volatile block; // so that no compiler takes the pair of calls away
    EXPECT_GE(allocations_of([] {
                  block = std::malloc(100);
                  std::free(block);
              }),
              1);
    EXPECT_GE(allocations_of([] { std::string(100, 'x').push_back('y'); }), 1);
}

TEST_F(HeapUse, IsNoneForAMessageOfAnyLevel)
{
    for (int level = -1; level < 10; ++level) {
        EXPECT_EQ(allocations_of([&] { report_message(level, "%s %d\n", "disk", 7); }), 0) << level;
    }
}

TEST_F(HeapUse, IsNoneForAMessageThatIsCut)
{
    EXPECT_EQ(allocations_of([] { report_message(9, "%s", long_text.c_str()); }), 0);
}

TEST_F(HeapUse, IsNoneForAMessageUnderTheTestHook)
{
    set_message_hook(test_message_hook);
    EXPECT_EQ(allocations_of([] { report_message(10, "%s", "disk"); }), 0);
}

TEST_F(HeapUse, IsNoneForPrintedText)
{
    set_print_indent(3);
    EXPECT_EQ(allocations_of([] { print_indented("%s", "a\nb\n"); }), 0);
    EXPECT_EQ(allocations_of([] { print_indented("%s", long_text.c_str()); }), 0);
}

TEST_F(HeapUse, IsNoneForRawMessages)
{
    EXPECT_EQ(allocations_of([] { write_raw_message("raw\n", "tag"); }), 0);
    EXPECT_EQ(allocations_of([] { write_raw_message(long_text.c_str(), "tag"); }), 0);
    set_output_hook(test_output_hook);
    EXPECT_EQ(allocations_of([] { write_raw_message(long_text.c_str(), "tag"); }), 0);
}

TEST_F(HeapUse, IsNoneForARecord)
{
    EXPECT_EQ(allocations_of([] { record_timestamped_line("line"); }), 0);
    EXPECT_EQ(allocations_of([] { record_timestamped_line(long_text.c_str()); }), 0);
}

TEST_F(HeapUse, IsNoneForAMessageLine)
{
    char buffer[200];
    EXPECT_EQ(allocations_of([&] { format_message_line(9, long_text.c_str(), buffer, 200); }), 0);
}

} // namespace
