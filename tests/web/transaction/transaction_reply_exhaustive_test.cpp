// Every reply of up to nine bytes from {CR, LF, NUL, 'a'}, in every split into two receives.
#include <cstddef>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "tests/web/transaction/reply_model_test.h"

namespace {

constexpr std::size_t longest = 9;
const std::string alphabet("\r\n\0a", 4);

class EveryReply : public ReplyModelTest {
protected:
    long replies = 0;
    long splits = 0;

    /// Checks \p reply and all that begin with it.
    void check(std::string &reply)
    {
        ++replies;
        for (std::size_t at = 0; at < reply.size() && !HasFailure(); ++at) {
            const std::string first = reply.substr(0, at);
            expect_as_model(at > 0 ? Pieces{first, reply.substr(at)} : Pieces{reply});
            ++splits;
        }
        for (std::size_t i = 0; reply.size() < longest && i < alphabet.size(); ++i) {
            reply += alphabet[i];
            check(reply);
            reply.pop_back();
        }
    }
};

} // namespace

TEST_F(EveryReply, IsReadAsByTheModelInEverySplit)
{
    std::string reply;
    check(reply);
    EXPECT_EQ(replies, 349525); // 1 + 4 + 16 + ... + 262144
    std::printf("%ld replies, %ld splits\n", replies, splits);
}
