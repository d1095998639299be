/// \file
/// Which steps of a transaction the step callback is told, and when.
/// Tests web/client_state.cpp.
#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <netdb.h>
#include <stdexcept>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

/// A step, and what had happened on the network when it was told.
struct Told {
    WebStep step;
    std::size_t lookups;
    std::size_t connects;
    bool request_was_sent;
    std::size_t receives;

    bool operator==(const Told &other) const
    {
        return step == other.step && lookups == other.lookups && connects == other.connects &&
               request_was_sent == other.request_was_sent && receives == other.receives;
    }
};

void PrintTo(const Told &told, std::ostream *stream)
{
    *stream << "step " << told.step << " after " << told.lookups << " lookups, " << told.connects
            << " connects, " << (told.request_was_sent ? "the" : "no") << " request, "
            << told.receives << " receives";
}

class TransactionSteps : public FakeNetworkTest {
protected:
    TransactionSteps()
    {
        set_web_step_callback(note, &told_);
    }

    ~TransactionSteps() override
    {
        set_web_step_callback(nullptr, nullptr);
    }

    static void note(WebStep step, void *argument)
    {
        const std::string &sent = network.sent;
        static_cast<std::vector<Told> *>(argument)->push_back(
            {step, network.lookups.size(), network.connects.size(),
             sent.size() >= 4 && sent.substr(sent.size() - 4) == "\r\n\r\n",
             network.receives.size()});
    }

    std::vector<Told> told_;
};

const Told found = {WEB_ADDRESS_FOUND, 1, 0, false, 0};
const Told connected = {WEB_CONNECTED, 1, 1, false, 0};
const Told sent = {WEB_REQUEST_SENT, 1, 1, true, 0};

using Steps = std::vector<Told>;

} // namespace

TEST_F(TransactionSteps, AreToldEachWhenItIsDone)
{
    network.events = {data("A\n\nbody"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(told_, (Steps{found, connected, sent, {WEB_HEADER_RECEIVED, 1, 1, true, 3}}));
}

TEST_F(TransactionSteps, AreTheSameThroughAProxy)
{
    network.events = {data("A\n\nbody"), peer_closes()};
    WebCall call;
    call.proxy_host = "proxy.test";
    call.proxy_port = 8080;
    EXPECT_EQ(run(call).result, 0);
    EXPECT_EQ(told_.size(), 4u);
}

TEST_F(TransactionSteps, BeginWithTheAddress)
{
    network.lookup_error = HOST_NOT_FOUND;
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(told_, Steps{});
}

TEST_F(TransactionSteps, EndWithTheAddressWhereNobodyListens)
{
    network.connect_error = ECONNREFUSED;
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(told_, Steps{found});
}

TEST_F(TransactionSteps, EndWithTheConnectionWhereThePeerTakesNothing)
{
    network.send_error = EAGAIN;
    network.send_error_ms = 10000;
    EXPECT_EQ(run({}).result, 1);
    EXPECT_EQ(told_, (Steps{found, connected}));
}

TEST_F(TransactionSteps, EndWithTheRequestWhereThePeerSaysNothing)
{
    EXPECT_EQ(run({}).result, 1);
    EXPECT_EQ(told_, (Steps{found, connected, sent}));
}

TEST_F(TransactionSteps, CountAHeaderThatThePeersCloseCutsOff)
{
    network.events = {data("A"), peer_closes()};
    EXPECT_EQ(run({}).header, "A");
    EXPECT_EQ(told_, (Steps{found, connected, sent, {WEB_HEADER_RECEIVED, 1, 1, true, 2}}));
}

TEST_F(TransactionSteps, EndWithTheHeaderWhereTheBodyFails)
{
    network.events = {data("A\n\nbody"), receive_error(ECONNRESET)};
    EXPECT_EQ(run({}).result, -1);
    EXPECT_EQ(told_.size(), 4u);
}

TEST_F(TransactionSteps, FindTheHeaderStoredAlready)
{
    static char *header;
    static std::string seen;
    header = nullptr;
    set_web_step_callback(
        [](WebStep step, void *) {
            if (step == WEB_HEADER_RECEIVED) {
                seen = header != nullptr ? header : "(none)";
            }
        },
        nullptr);
    network.events = {data("A\n\nabc"), peer_closes()};
    char *body = nullptr;
    web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body, nullptr, 0,
                    nullptr, nullptr);
    EXPECT_EQ(seen, "A\n");
    std::free(header);
    std::free(body);
}

TEST_F(TransactionSteps, AreToldNobodyWhereThereIsNoCallback)
{
    set_web_step_callback(nullptr, &told_);
    network.events = {data("A\n\nbody"), peer_closes()};
    EXPECT_EQ(run({}).result, 0);
    EXPECT_EQ(told_, Steps{});
}

// The base class looks whether a descriptor is left open.
TEST_F(TransactionSteps, CloseTheConnectionWhenTheCallbackThrows)
{
    for (const WebStep step :
         {WEB_ADDRESS_FOUND, WEB_CONNECTED, WEB_REQUEST_SENT, WEB_HEADER_RECEIVED}) {
        static WebStep throwing_step;
        throwing_step = step;
        set_web_step_callback(
            [](WebStep told, void *) {
                if (told == throwing_step) {
                    throw std::runtime_error("from the step callback");
                }
            },
            nullptr);
        network.events = {data("A\n\nbody"), peer_closes()};
        char *header = nullptr;
        char *body = nullptr;
        EXPECT_THROW(web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header, &body,
                                     nullptr, 0, nullptr, nullptr),
                     std::runtime_error);
        EXPECT_EQ(header != nullptr, step == WEB_HEADER_RECEIVED);
        EXPECT_EQ(body, nullptr);
        std::free(header);
    }
}
