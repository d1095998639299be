/// \file
/// What the blocks of the allocator still hold when they are given back. The linker routes this
/// program's malloc() and free() through the functions below.
#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace {

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
    void *const block = __real_malloc(size);
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
