/// \file
/// What a transaction costs in calls of the system.
#include <gtest/gtest.h>
#include <string>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"

namespace {

class TransactionCalls : public FakeNetworkTest {};

} // namespace

TEST_F(TransactionCalls, AreTwoForEachByteOfTheHeaderAndForEachChunkOfTheBody)
{
    const std::string header = "HTTP/1.0 200 OK\r\nServer: x\r\n\r\n";
    const std::string body(10 * 1023 + 1, 'x');
    network.events = {data(header + body), peer_closes()};
    EXPECT_EQ(run({}).body, body);

    const std::size_t chunks = 11;
    const std::size_t end_of_stream = 1;
    EXPECT_EQ(network.receives.size(), header.size() + chunks + end_of_stream);
    EXPECT_EQ(network.waits.size(), network.receives.size());
}

TEST_F(TransactionCalls, AreOneSocketOneLookupAndOneConnection)
{
    network.events = {data("A\n\n"), peer_closes()};
    run({});
    EXPECT_EQ(network.sockets.size(), 1u);
    EXPECT_EQ(network.lookups.size(), 1u);
    EXPECT_EQ(network.connects.size(), 1u);
}
