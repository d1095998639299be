/// \file
/// Random replies, split by a transaction and by a plain model of where a reply's header ends and
/// of what its body keeps.
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/transaction/reply_model_test.h"

namespace {

/// Cuts a reply into pieces of 1 to \p longest bytes.
Pieces cut(const std::string &reply, unsigned longest, RandomTexts &random)
{
    Pieces pieces;
    for (std::size_t at = 0; at < reply.size(); at += pieces.back().size()) {
        pieces.push_back(reply.substr(at, 1 + random.below(longest)));
    }
    return pieces;
}

const std::string nasty_bytes("\r\r\r\n\n\n\n\0aZ: \x80\xff", 14);

} // namespace

TEST_F(ReplyModelTest, AgreesOnRandomReplies)
{
    constexpr int rounds = 40000;
    RandomTexts random(20261, nasty_bytes, 40);
    int complete = 0;
    int losing = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const Pieces pieces = cut(random.next(), 1 + random.below(20), random);
        const std::size_t at_most = random.below(2) == 0 ? SIZE_MAX : 1 + random.below(6);
        const ReplyModel model = expect_as_model(pieces, at_most);
        complete += model.complete ? 1 : 0;
        losing += model.lost > 0 ? 1 : 0;
    }
    // Otherwise the replies would show little.
    EXPECT_GT(complete, rounds / 4);
    EXPECT_LT(complete, rounds * 9 / 10);
    EXPECT_GT(losing, rounds / 10);
}

TEST_F(ReplyModelTest, AgreesOnRandomRepliesWithLongBodies)
{
    constexpr int rounds = 4000;
    // Few bytes are NUL, so that whole chunks are lost in part only.
    std::string mostly_letters(1000, 'x');
    mostly_letters.replace(0, nasty_bytes.size(), nasty_bytes);
    RandomTexts bodies(20262, mostly_letters, 6000);
    RandomTexts headers(20263, nasty_bytes, 20);
    int losing = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const std::string reply = headers.next() + "A\n\n" + bodies.next();
        const unsigned longest = bodies.below(2) == 0 ? 1500 : 5000;
        const std::size_t at_most = bodies.below(2) == 0 ? SIZE_MAX : 1 + bodies.below(1100);
        losing += expect_as_model(cut(reply, longest, bodies), at_most).lost > 0 ? 1 : 0;
    }
    EXPECT_GT(losing, rounds / 4);
    EXPECT_LT(losing, rounds);
}

TEST_F(ReplyModelTest, AgreesOnEveryShortReply)
{
    const std::string alphabet("\r\na\0", 4);
    std::vector<std::string> replies = {""};
    for (std::size_t i = 0; i < replies.size() && !HasFailure(); ++i) {
        const std::string reply = replies[i];
        Pieces single_bytes;
        for (const char byte : reply) {
            single_bytes.emplace_back(1, byte);
        }
        expect_as_model(single_bytes);
        if (!reply.empty()) {
            expect_as_model({reply});
            expect_as_model({reply}, 2);
        }
        if (reply.size() < 6) {
            for (const char byte : alphabet) {
                replies.push_back(reply + byte);
            }
        }
    }
    EXPECT_EQ(replies.size(), 5461u); // 1 + 4 + 16 + ... + 4096
}
