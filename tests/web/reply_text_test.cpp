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

constexpr std::size_t greatest = std::numeric_limits<std::size_t>::max();

/// The sizes that were asked for, and from which one on none is given.
std::vector<std::size_t> requests;
std::size_t least_refused = greatest;

class ReplyText : public testing::Test {
protected:
    ReplyText()
    {
        requests.clear();
        least_refused = greatest;
    }
};

void append(reply_text &text, std::size_t count)
{
    std::memset(room_in_reply_text(text, count), 'x', count);
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
    char *const taken = take_reply_text(text);
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
    char *const taken = take_reply_text(text);
    EXPECT_STREQ(taken, "xxx");
    std::free(taken);
}

TEST_F(ReplyText, StaysWhatItWasWhenMemoryIsExhausted)
{
    reply_text text = make_reply_text();
    append(text, 500);
    const char *const block = text.data.get();
    least_refused = 768;
    EXPECT_THROW(room_in_reply_text(text, 100), std::bad_alloc);
    EXPECT_EQ(text.data.get(), block);
    EXPECT_EQ(text.length, 500u);
    EXPECT_EQ(text.capacity, 512u);
}

TEST_F(ReplyText, RefusesALengthThatCannotBeCounted)
{
    // Only said to be that long: nothing is read or written.
    reply_text text = {{nullptr, std::free}, greatest - 10, greatest - 10};
    EXPECT_THROW(room_in_reply_text(text, 10), std::bad_alloc);
    EXPECT_THROW(room_in_reply_text(text, greatest), std::bad_alloc);
    EXPECT_TRUE(requests.empty());
}

TEST_F(ReplyText, AsksForTheGreatestSizeThereIs)
{
    reply_text text = {{nullptr, std::free}, greatest - 10, greatest - 10};
    EXPECT_THROW(room_in_reply_text(text, 9), std::bad_alloc);
    EXPECT_EQ(requests, (std::vector<std::size_t>{greatest}));
}

TEST_F(ReplyText, GrowsByHalfAsLongAsThatCanBeCounted)
{
    const std::size_t two_thirds = greatest / 3 * 2;
    least_refused = 1;
    reply_text text = {{nullptr, std::free}, two_thirds - 1, two_thirds};
    EXPECT_THROW(room_in_reply_text(text, 1), std::bad_alloc);
    text = {{nullptr, std::free}, two_thirds + 1, two_thirds + 2};
    EXPECT_THROW(room_in_reply_text(text, 1), std::bad_alloc);
    EXPECT_EQ(requests, (std::vector<std::size_t>{greatest, two_thirds + 3}));
}
