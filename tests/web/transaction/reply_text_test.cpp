/// \file
/// The growing text of a reply at the ends of what a size can count, where no reply leads. The
/// linker routes this program's realloc() through the function below.
#include "web/reply_text.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <vector>

namespace {

using corvella::make_reply_text;
using corvella::release_reply_text;
using corvella::reply_text;
using corvella::reserve_reply_text;

/// The greatest block: 2 GiB less one byte where words have 32 bits.
constexpr std::size_t greatest = std::numeric_limits<std::ptrdiff_t>::max();

/// What was advised, and the result.
struct Advice {
    const char *start;
    std::size_t count;
};
std::vector<Advice> advice;
int advice_result = 0;

/// The sizes that were asked for, and from which one on none is given.
std::vector<std::size_t> requests;
std::size_t least_refused = SIZE_MAX;

class ReplyText : public testing::Test {
protected:
    ReplyText()
    {
        requests.clear();
        advice.clear();
        advice_result = 0;
        least_refused = SIZE_MAX;
    }
};

void append(reply_text &text, std::size_t count)
{
    std::memset(reserve_reply_text(text, count), 'x', count);
    text.length += count;
}

} // namespace

// The names that the linker's option --wrap gives to realloc().
extern "C" void *__real_realloc(void *pointer, std::size_t size);
extern "C" void *__wrap_realloc(void *pointer, std::size_t size);

void *__wrap_realloc(void *pointer, std::size_t size)
{
    requests.push_back(size);
    return size < least_refused ? __real_realloc(pointer, size) : nullptr;
}

extern "C" int __wrap_madvise(void *start, std::size_t count, int what);

int __wrap_madvise(void *start, std::size_t count, int)
{
    advice.push_back({static_cast<const char *>(start), count});
    return advice_result;
}

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

/// A system without the call never comes to the tests of what is advised.
bool memory_can_be_populated()
{
    reply_text text = make_reply_text();
    append(text, 4 * mebibyte);
    append(text, mebibyte);
    const bool advised = !advice.empty();
    advice.clear();
    return advised;
}

} // namespace

TEST_F(ReplyText, PopulatesAThirtySecondPartAhead)
{
    if (!memory_can_be_populated()) {
        GTEST_SKIP() << "the system cannot populate memory";
    }
    reply_text text = make_reply_text();
    append(text, 32 * mebibyte);
    EXPECT_TRUE(advice.empty()) << "nothing had been received";
    for (std::size_t length = 0; length < 4 * mebibyte; length += 1023) {
        append(text, 1023);
    }
    ASSERT_FALSE(advice.empty());
    for (const Advice &one : advice) {
        EXPECT_GE(one.start, text.data.get() + 32 * mebibyte);
        EXPECT_LE(one.start + one.count, text.data.get() + text.length + 2 * mebibyte);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(one.start) % 65536, 0u);
        EXPECT_EQ(one.count % 65536, 0u);
        EXPECT_LE(one.count, 36 * mebibyte / 32);
        EXPECT_GE(one.count, mebibyte - 2 * 65536);
    }
    EXPECT_LE(advice.size(), 4u) << "a mebibyte at a time";
}

TEST_F(ReplyText, PopulatesNothingOfAShortText)
{
    reply_text text = make_reply_text();
    append(text, 4 * mebibyte - 1024);
    append(text, 1023);
    EXPECT_TRUE(advice.empty());
}

TEST_F(ReplyText, TriesToPopulateOnceWhereTheSystemRefuses)
{
    if (!memory_can_be_populated()) {
        GTEST_SKIP() << "the system cannot populate memory";
    }
    advice_result = -1;
    reply_text text = make_reply_text();
    for (std::size_t length = 0; length < 8 * mebibyte; length += 1023) {
        append(text, 1023);
    }
    EXPECT_EQ(advice.size(), 1u);
}

TEST_F(ReplyText, BeginsWith512BytesAndGrowsByHalf)
{
    reply_text text = make_reply_text();
    append(text, 1);
    append(text, 510);
    EXPECT_EQ(requests, (std::vector<std::size_t>{512})) << "511 bytes and the NUL";
    append(text, 1);
    EXPECT_EQ(requests, (std::vector<std::size_t>{512, 768}));
    append(text, 255);
    EXPECT_EQ(requests.size(), 2u) << "767 bytes and the NUL";
}

TEST_F(ReplyText, GrowsToWhatIsNeededWhereHalfIsTooLittle)
{
    reply_text text = make_reply_text();
    append(text, 600);
    append(text, 400);
    EXPECT_EQ(requests, (std::vector<std::size_t>{601, 1001}));
}

TEST_F(ReplyText, IsCutToItsSizeWhenItIsTaken)
{
    reply_text text = make_reply_text();
    append(text, 3);
    char *const taken = release_reply_text(text);
    EXPECT_STREQ(taken, "xxx");
    EXPECT_EQ(requests, (std::vector<std::size_t>{512, 4}));
    EXPECT_EQ(text.length, 0u);
    EXPECT_EQ(text.capacity, 0u);
    EXPECT_EQ(text.data, nullptr);
    std::free(taken);
}

TEST_F(ReplyText, IsTakenWholeWhereItCannotBeCut)
{
    reply_text text = make_reply_text();
    append(text, 3);
    least_refused = 0;
    char *const taken = release_reply_text(text);
    EXPECT_STREQ(taken, "xxx");
    std::free(taken);
}

TEST_F(ReplyText, StaysWhatItWasWhenMemoryIsExhausted)
{
    reply_text text = make_reply_text();
    append(text, 500);
    const char *const block = text.data.get();
    least_refused = 768;
    EXPECT_THROW(reserve_reply_text(text, 100), std::bad_alloc);
    EXPECT_EQ(text.data.get(), block);
    EXPECT_EQ(text.length, 500u);
    EXPECT_EQ(text.capacity, 512u);
}

TEST_F(ReplyText, RefusesALengthThatCannotBeCounted)
{
    // Only said to be that long: nothing is read or written.
    reply_text text = {{nullptr, std::free}, greatest - 10, greatest - 10};
    EXPECT_THROW(reserve_reply_text(text, 10), std::bad_alloc);
    EXPECT_THROW(reserve_reply_text(text, greatest), std::bad_alloc);
    EXPECT_THROW(reserve_reply_text(text, SIZE_MAX), std::bad_alloc);
    EXPECT_TRUE(requests.empty());
}

TEST_F(ReplyText, AsksForTheGreatestSizeThereIs)
{
    least_refused = greatest;
    reply_text text = {{nullptr, std::free}, greatest - 10, greatest - 10};
    EXPECT_THROW(reserve_reply_text(text, 9), std::bad_alloc);
    EXPECT_EQ(requests, (std::vector<std::size_t>{greatest}));
}

TEST_F(ReplyText, GrowsByHalfUpToTheGreatestSize)
{
    const std::size_t half = greatest / 2;
    least_refused = 1;
    reply_text text = {{nullptr, std::free}, half - 1, half};
    EXPECT_THROW(reserve_reply_text(text, 1), std::bad_alloc);
    text = {{nullptr, std::free}, greatest - 5, greatest - 4};
    EXPECT_THROW(reserve_reply_text(text, 4), std::bad_alloc);
    EXPECT_EQ(requests, (std::vector<std::size_t>{half + half / 2, greatest}));
}
