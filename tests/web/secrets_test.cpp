/// \file
/// The credentials and the allocator: how much is asked for, and what the blocks still hold when
/// they are given back. The linker routes this program's malloc() and free() through the functions
/// below.
#include "tests/web/endless_text.h"
#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr std::size_t refused_from = std::size_t{1} << 30;

std::size_t greatest_request = 0;
bool watching = false;
std::map<void *, std::size_t> given; // the sizes that were asked for
std::vector<std::string> taken_back;

using Secrets = FakeNetworkTest;

} // namespace

// The names that the linker's option --wrap gives to malloc() and free().
extern "C" void *__real_malloc(std::size_t size);
extern "C" void __real_free(void *block);
extern "C" void *__wrap_malloc(std::size_t size);
extern "C" void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size)
{
    greatest_request = std::max(greatest_request, size);
    void *const block = size < refused_from ? __real_malloc(size) : nullptr;
    if (watching) {
        given[block] = size;
    }
    return block;
}

void __wrap_free(void *block)
{
    const auto found = given.find(block);
    if (watching && found != given.end()) {
        taken_back.emplace_back(static_cast<const char *>(block), found->second);
        given.erase(found);
    }
    __real_free(block);
}

TEST_F(Secrets, AreWipedBeforeTheirMemoryIsGivenBack)
{
    network.events = {data("A\n\nbody"), peer_closes()};
    WebCall call;
    call.user = "ab";
    call.password = "open sesame";
    watching = true;
    const WebOutcome outcome = run(call);
    watching = false;
    EXPECT_EQ(outcome.result, 0);
    // "ab:open sesame" and its base64 form, each with a NUL.
    const std::vector<std::string> wiped = {std::string(21, '\0'), std::string(15, '\0')};
    std::vector<std::string> of_these_sizes;
    for (const std::string &block : taken_back) {
        if (block.size() == 15 || block.size() == 21) {
            of_these_sizes.push_back(block);
        }
    }
    EXPECT_EQ(of_these_sizes, wiped);
    EXPECT_TRUE(given.empty());
}

// Their base64 form and its NUL would be beyond what an int counts.
TEST_F(Secrets, BeyondWhatCanBeEncodedAreRefusedBeforeMemoryIsAskedFor)
{
    const std::size_t least_refused = 1610612733; // a quarter of INT32_MAX, thrice
    const EndlessText all(least_refused);
    if (all.text() == nullptr) {
        GTEST_SKIP() << "this process has no place for so long a text";
    }
    const struct {
        const char *user;
        const char *password;
    } cases[] = {
        {all.text(), ""},        {all.text(), "abc"},     {"", all.text()},
        {"abc", all.text() + 3}, {all.text() + 3, "abc"},
    };
    for (const auto &row : cases) {
        WebCall call;
        call.user = row.user;
        call.password = row.password;
        greatest_request = 0;
        EXPECT_THROW(run(call), std::bad_alloc);
        EXPECT_LT(greatest_request, refused_from);
    }
}

TEST_F(Secrets, OfTheGreatestLengthThatCanBeEncodedAreRefusedByTheMemoryOnly)
{
    const EndlessText all(1610612732);
    if (all.text() == nullptr) {
        GTEST_SKIP() << "this process has no place for so long a text";
    }
    for (const bool in_password : {false, true}) {
        WebCall call;
        call.user = in_password ? "" : all.text();
        call.password = in_password ? all.text() : "";
        greatest_request = 0;
        EXPECT_THROW(run(call), std::bad_alloc);
        EXPECT_EQ(greatest_request, 1610612732U + 2) << "a colon and a NUL";
    }
}
