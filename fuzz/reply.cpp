// Input: a line with the most that one receive takes, then a reply.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "fuzz/check.h"
#include "fuzz/finished_peer.h"
#include "fuzz/input.h"
#include "tests/web/transaction/reply_model.h"
#include "web/web.h"

namespace {

/// A text that is given back.
using ReplyText = std::unique_ptr<char, void (*)(void *)>;

/// The bytes that a text should have, and the NUL behind them.
void expect_bytes(const ReplyText &actual, const std::string &expected, const std::string &what)
{
    expect(actual != nullptr, what + " is there");
    expect_equal(std::string(actual.get(), expected.size() + 1), expected + '\0', what);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    const int at_most = Input::number(numbers);
    finished_peer.receive_at_most = at_most < 1 ? SIZE_MAX : static_cast<std::size_t>(at_most);
    finished_peer.reply = input.rest().substr(0, 100000);

    set_web_error("earlier");
    char *header = nullptr;
    char *body = nullptr;
    const int result = web_transaction("HTTP", "127.0.0.1", "/", 80, "GET", "", {}, &header, &body,
                                       nullptr, 0, nullptr, nullptr);
    const ReplyText header_text(header, std::free);
    const ReplyText body_text(body, std::free);
    const ReplyModel model = model_of({finished_peer.reply}, finished_peer.receive_at_most);
    expect_equal(result, 0, "the transaction's result");
    expect_bytes(header_text, model.header, "the header");
    expect_bytes(body_text, model.body, "the body");
    expect_equal(web_last_error(), "earlier", "the last error text");
    return 0;
}
