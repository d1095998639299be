/// \file
/// The progress callback: when it is called, and with which number.
#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

class TransactionProgress : public FakeNetworkTest {
protected:
    TransactionProgress()
    {
        set_web_progress_callback(note, &seen_);
    }

    ~TransactionProgress() override
    {
        set_web_progress_callback(nullptr, nullptr);
    }

    static void note(std::size_t received, void *argument)
    {
        static_cast<std::vector<std::size_t> *>(argument)->push_back(received);
    }

    std::vector<std::size_t> seen_;
};

using Numbers = std::vector<std::size_t>;

} // namespace

TEST_F(TransactionProgress, IsReportedAfterEachChunk)
{
    network.events = {data("A\n\n"), data(std::string(1500, 'x')), silence(9000), data("y"),
                      peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(seen_, (Numbers{1023, 1500, 1501}));
}

TEST_F(TransactionProgress, CountsBytesThatANulDiscards)
{
    network.events = {data("A\n\n"), data(std::string("ab\0cd", 5)), data(std::string("\0", 1)),
                      data("ef"), peer_closes()};
    EXPECT_EQ(run({}).body, "abef");
    EXPECT_EQ(seen_, (Numbers{5, 6, 8}));
}

TEST_F(TransactionProgress, IsNotReportedForTheHeaderOrAnEmptyBody)
{
    network.events = {data("A\nB\n\n"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(seen_, Numbers{});
}

TEST_F(TransactionProgress, BeginsAnewWithEachTransaction)
{
    network.events = {data("A\n\nabc"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    network.events = {data("A\n\nde"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(seen_, (Numbers{3, 2}));
}

TEST_F(TransactionProgress, IsNotReportedWithoutCallback)
{
    set_web_progress_callback(nullptr, &seen_);
    network.events = {data("A\n\nabc"), peer_closes()};
    EXPECT_EQ(run({}).body, "abc");
    EXPECT_EQ(seen_, Numbers{});
}

// The base class checks that no descriptor is left open.
TEST_F(TransactionProgress, ClosesTheConnectionWhenTheCallbackThrows)
{
    set_web_progress_callback([](std::size_t, void *) { throw std::runtime_error("enough"); },
                              nullptr);
    network.events = {data("A\n\nabc"), peer_closes()};
    char *header = nullptr;
    char *body = nullptr;
    EXPECT_THROW(web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body,
                                 nullptr, 0, nullptr, nullptr),
                 std::runtime_error);
    EXPECT_STREQ(header, "A\n");
    EXPECT_EQ(body, nullptr);
    std::free(header);
}
