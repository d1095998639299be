// Input: a line with the size of the destinations and letters for those that are null (V, U, B);
// then the service's whole reply.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "fuzz/check.h"
#include "fuzz/finished_peer.h"
#include "fuzz/input.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/reply_status_model.h"
#include "tests/web/transaction/reply_model.h"
#include "tests/web/update/update_model.h"
#include "web/web.h"

namespace {

/// A destination of the query, or none.
class Destination {
public:
    Destination(const char *name, int capacity, bool wanted)
        : name_(name), wanted_(wanted), buffer_(static_cast<std::size_t>(std::max(capacity, 1))),
          capacity_(capacity)
    {
    }

    char *data() const
    {
        return wanted_ ? buffer_.data() : nullptr;
    }

    /// It is to hold the text and NULs up to its end, or not to have been written.
    void check(const UpdateReplyModel *model) const
    {
        const std::optional<std::string> stored =
            model != nullptr && wanted_ ? model->stored(name_, capacity_) : std::nullopt;
        std::string expected = stored.value_or(std::string(buffer_.size(), ExactBuffer::filling));
        expected.resize(buffer_.size(), '\0');
        expect_equal(buffer_.bytes(), expected, name_);
        expect(buffer_.intact(), "nothing is written around it");
    }

private:
    std::string name_;
    bool wanted_;
    ExactBuffer buffer_;
    int capacity_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string settings = input.line();
    const int capacity = std::min(Input::number(settings), 4096);
    const auto wanted = [&](char letter) { return settings.find(letter) == std::string::npos; };
    const Destination message("Message", capacity, true);
    const Destination version("Version", capacity, wanted('V'));
    const Destination url("URL", capacity, wanted('U'));
    const Destination button("Button", capacity, wanted('B'));
    finished_peer.reply = input.rest().substr(0, 100000);

    // The name of the web server is not looked up where there is a proxy.
    const int result = query_product_update("p", "l", 1.0F, "n", "o", "v", "m", "a", capacity,
                                            message.data(), version.data(), url.data(),
                                            button.data(), "127.0.0.1", 80, nullptr, nullptr);
    const ReplyModel reply = model_of({finished_peer.reply}, SIZE_MAX);
    const std::string header_text = reply.header.substr(0, reply.header.find('\0'));
    const std::string verdict = scanned_verdict(header_text);
    const bool accepted = verdict == "(accepted)";
    const UpdateReplyModel model(reply.body);
    expect_equal(result, accepted && model.has_message() ? 0 : -1, "the query's result");
    expect_equal(web_last_error(), accepted ? "" : verdict, "the last error text");
    for (const Destination *destination : {&message, &version, &url, &button}) {
        destination->check(accepted ? &model : nullptr);
    }
    return 0;
}
