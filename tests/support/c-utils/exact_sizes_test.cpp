// The linker routes malloc() and realloc() of this program's objects through the functions below,
// which note the sizes.
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"

namespace {

std::vector<std::size_t> sizes;
bool watching = false;

void note(std::size_t size)
{
    if (watching) {
        watching = false; // the note itself allocates
        sizes.push_back(size);
        watching = true;
    }
}

} // namespace

extern "C" void *__real_malloc(std::size_t size);
extern "C" void *__real_realloc(void *pointer, std::size_t size);
extern "C" void *__wrap_malloc(std::size_t size);
extern "C" void *__wrap_realloc(void *pointer, std::size_t size);

void *__wrap_malloc(std::size_t size)
{
    note(size);
    return __real_malloc(size);
}

void *__wrap_realloc(void *pointer, std::size_t size)
{
    note(size);
    return __real_realloc(pointer, size);
}

namespace {

using Sizes = std::vector<std::size_t>;

template <typename Action> Sizes sizes_of(Action action)
{
    sizes.clear();
    watching = true;
    action();
    watching = false;
    return sizes;
}

} // namespace

TEST(FormattedString, HasItsLengthAndANulAllocated)
{
    for (const std::size_t length : {0U, 1U, 15U, 254U, 255U, 256U, 257U, 4095U, 70000U}) {
        const std::string text(length, 'x');
        char *formatted = nullptr;
        EXPECT_EQ(sizes_of([&] { formatted = format_string_new("%s", text.c_str()); }),
                  Sizes{length + 1});
        EXPECT_EQ(formatted, text);
        checked_free(formatted);
    }
}

TEST(StringBuffer, GrowsByTheAppendedTextAnd128Bytes)
{
    string_buffer buffer = {};
    EXPECT_EQ(sizes_of([&] { string_buffer_append_format(&buffer, "%s", ""); }), Sizes{128});
    EXPECT_EQ(buffer.capacity, 128);
    // 128 - 0 - 2 bytes fit without growing.
    EXPECT_EQ(sizes_of([&] {
                  string_buffer_append_format(&buffer, "%s", std::string(126, 'a').c_str());
              }),
              Sizes{});
    EXPECT_EQ(sizes_of([&] { string_buffer_append_format(&buffer, "b"); }), Sizes{1 + 126 + 128});
    EXPECT_EQ(buffer.capacity, 1 + 126 + 128);
    const std::string longer(5000, 'c');
    EXPECT_EQ(sizes_of([&] { string_buffer_append_format(&buffer, "%s", longer.c_str()); }),
              Sizes{5000 + 127 + 128});
    string_buffer_free(&buffer);
}
