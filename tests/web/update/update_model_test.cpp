/// \file
/// Random replies to the update query, read by the query and by a plain model of what it is to do.
#include "tests/web/update/update_model.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/fake_network.h"
#include "tests/web/update/update_call.h"
#include "web/web.h"

namespace {

/// Bodies of names, colons, line ends and letters, in a few pieces, some with a NUL.
class RandomReplies {
public:
    explicit RandomReplies(unsigned seed) : random_(seed, "", 0) {}

    std::vector<std::string> next()
    {
        std::vector<std::string> pieces(1 + random_.below(3));
        for (std::string &piece : pieces) {
            const unsigned tokens = 1 + random_.below(8);
            for (unsigned i = 0; i < tokens; ++i) {
                piece += token();
            }
        }
        return pieces;
    }

    unsigned below(unsigned limit)
    {
        return random_.below(limit);
    }

private:
    std::string token()
    {
        static const std::vector<std::string> lines = {"Version: 5.2\n", "URL: u\r\n",
                                                       "Button: b\n", "Size: 3\n", "Message: a\n"};
        static const std::vector<std::string> tokens = {
            "Version: ", "URL: ",  "Button: ", "Message: ", "Version", "URL:",      "Button:",
            "Message",   "Size: ", ":",        ": ",        "\n",      "\n",        "\n",
            "\r\n",      " ",      "x",        "5.2",       "\xe9",    "message: ", "M"};
        if (random_.below(40) == 0) {
            return std::string(1, '\0');
        }
        if (random_.below(2) == 0) {
            return lines[random_.below(static_cast<unsigned>(lines.size()))];
        }
        return tokens[random_.below(static_cast<unsigned>(tokens.size()))];
    }

    RandomTexts random_;
};

class UpdateReplies : public FakeNetworkTest {
protected:
    static void expect_as_model(const std::vector<std::string> &pieces, const UpdateQuery &query)
    {
        std::string body;
        network.waits.clear();
        network.events = {data("HTTP/1.0 200 OK\n\n")};
        for (const std::string &piece : pieces) {
            network.events.push_back(data(piece));
            body += piece.c_str(); // what stands behind a NUL in a piece is lost
        }
        network.events.push_back(peer_closes());
        const UpdateReplyModel model(body);
        const UpdateOutcome outcome = ask(query);
        SCOPED_TRACE(testing::PrintToString(body));
        EXPECT_EQ(outcome.result, model.has_message() ? 0 : -1);
        EXPECT_EQ(outcome.message, model.stored("Message", query.capacity));
        EXPECT_EQ(outcome.version, model.stored("Version", query.capacity));
        EXPECT_EQ(outcome.url, model.stored("URL", query.capacity));
        EXPECT_EQ(outcome.button, model.stored("Button", query.capacity));
        EXPECT_EQ(outcome.error, "");
    }
};

} // namespace

TEST_F(UpdateReplies, AgreesOnRandomReplies)
{
    constexpr int rounds = 20000;
    RandomReplies replies(20260);
    int with_message = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        UpdateQuery query;
        query.capacity = replies.below(3) == 0 ? static_cast<int>(replies.below(12)) : 256;
        const std::vector<std::string> pieces = replies.next();
        SCOPED_TRACE(query.capacity);
        expect_as_model(pieces, query);
        std::string body;
        for (const std::string &piece : pieces) {
            body += piece.c_str();
        }
        with_message += UpdateReplyModel(body).has_message() ? 1 : 0;
    }
    // Otherwise the replies would show little.
    EXPECT_GT(with_message, rounds / 10);
    EXPECT_LT(with_message, rounds * 9 / 10);
}

TEST_F(UpdateReplies, AgreesOnEveryBeginningOfAReply)
{
    const std::string reply =
        "Version: 5\r\nURL:u\n\nButton: b\nButton:\nSize: 3\nMessage: a\nb: c\n";
    for (std::size_t length = 1; length <= reply.size(); ++length) {
        expect_as_model({reply.substr(0, length)}, {});
    }
}
