/// \file
/// The credentials and the allocator: how much is asked for, and what the blocks still hold when
/// they are given back. The linker routes this program's malloc() and free() through the functions
/// below.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/transaction/endless_text.h"
#include "tests/web/web_call.h"
#include "web/web_error.h"

namespace {

constexpr std::size_t refused_from = std::size_t{1} << 30;

std::size_t greatest_request = 0;
std::size_t refused_size = 0; // of no request
bool watching = false;
std::map<void *, std::size_t> given; // the sizes that were asked for
std::vector<std::string> taken_back;

// Of "ab:open sesame" and of its base64 form, each with a NUL.
constexpr std::size_t plain_size = 15;
constexpr std::size_t encoded_size = 21;

class Secrets : public FakeNetworkTest {
protected:
    Secrets()
    {
        network.events = {data("A\n\nbody"), peer_closes()};
        refused_size = 0;
        given.clear();
        taken_back.clear();
        call_.user = "ab";
        call_.password = "open sesame";
    }
    ~Secrets() override
    {
        watching = false;
        refused_size = 0;
    }

    /// Runs the call. \return its result, or "std::bad_alloc".
    std::string run_watched()
    {
        watching = true;
        try {
            const WebOutcome outcome = run(call_);
            watching = false;
            return std::to_string(outcome.result);
        } catch (const std::bad_alloc &) {
            watching = false;
            return "std::bad_alloc";
        }
    }

    /// What the blocks of the secrets' sizes held when they were given back.
    static std::vector<std::string> blocks_of_secrets()
    {
        std::vector<std::string> blocks;
        for (const std::string &block : taken_back) {
            if (block.size() == plain_size || block.size() == encoded_size) {
                blocks.push_back(block);
            }
        }
        return blocks;
    }

    WebCall call_;
};

const std::string wiped_plain(plain_size, '\0');
const std::string wiped_encoded(encoded_size, '\0');

} // namespace

// The names that the linker's option --wrap gives to malloc() and free().
extern "C" void *__real_malloc(std::size_t size);
extern "C" void __real_free(void *block);
extern "C" void *__wrap_malloc(std::size_t size);
extern "C" void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size)
{
    greatest_request = std::max(greatest_request, size);
    const bool is_refused = size >= refused_from || (size == refused_size && size > 0);
    void *const block = is_refused ? nullptr : __real_malloc(size);
    if (watching && block != nullptr) {
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
    EXPECT_EQ(run_watched(), "0");
    EXPECT_EQ(blocks_of_secrets(), (std::vector<std::string>{wiped_encoded, wiped_plain}));
    EXPECT_TRUE(given.empty());
}

TEST_F(Secrets, AreWipedWhereThereIsNoMemoryForTheirBase64Form)
{
    refused_size = encoded_size;
    EXPECT_EQ(run_watched(), "std::bad_alloc");
    EXPECT_EQ(blocks_of_secrets(), std::vector<std::string>{wiped_plain});
    EXPECT_TRUE(given.empty());
}

// The one send that is theirs, and each of them.
TEST_F(Secrets, AreWipedWhereTheyCannotBeSent)
{
    const std::vector<std::string> wiped = {wiped_encoded, wiped_plain};
    constexpr std::size_t sends_before = 11;
    network.lost_send = sends_before;
    EXPECT_EQ(run_watched(), "0");
    EXPECT_EQ(network.sends.at(sends_before).bytes, "YWI6b3BlbiBzZXNhbWU=");
    EXPECT_EQ(blocks_of_secrets(), wiped);

    taken_back.clear();
    network = FakeNetwork();
    network.events = {peer_closes()};
    network.send_error = EPIPE;
    EXPECT_EQ(run_watched(), "0");
    EXPECT_EQ(blocks_of_secrets(), wiped);
    EXPECT_EQ(given.size(), 1u) << "the text of the failure is kept";
    EXPECT_EQ(given.count(const_cast<char *>(web_last_error())), 1u);
}

// They are formed though the peer has been given up before.
TEST_F(Secrets, AreWipedWhereThePeerTakesNothing)
{
    network.send_error = EINTR;
    EXPECT_EQ(run_watched(), "1");
    EXPECT_EQ(blocks_of_secrets(), (std::vector<std::string>{wiped_encoded, wiped_plain}));
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
