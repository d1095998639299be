/// \file
/// A transaction's reply compared with the model's.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "tests/web/fake_network.h"
#include "tests/web/transaction/reply_model.h"
#include "web/web.h"

/// Whether \p text holds these bytes and a NUL behind them.
inline bool holds(const char *text, const std::string &bytes)
{
    return text != nullptr && std::equal(bytes.c_str(), bytes.c_str() + bytes.size() + 1, text);
}

inline std::string in_words(const Pieces &pieces, std::size_t receive_at_most)
{
    return testing::PrintToString(pieces) + ", at most " + std::to_string(receive_at_most);
}

/// Compares a transaction with the model.
class ReplyModelTest : public FakeNetworkTest {
protected:
    /// \return the model, for the caller to count what it has seen.
    static ReplyModel expect_as_model(const Pieces &pieces, std::size_t receive_at_most = SIZE_MAX)
    {
        network.receive_at_most = receive_at_most;
        network.waits.clear();
        network.receives.clear();
        network.events.clear();
        for (const std::string &piece : pieces) {
            network.events.push_back(data(piece));
        }
        network.events.push_back(peer_closes());
        char *header = nullptr;
        char *body = nullptr;
        const int result = web_transaction("HTTP", "web1.test", "/", 80, "GET", "", {}, &header,
                                           &body, nullptr, 0, nullptr, nullptr);
        const ReplyModel model = model_of(pieces, receive_at_most);
        EXPECT_EQ(result, 0) << in_words(pieces, receive_at_most);
        // The header may have NUL bytes; the body has none.
        EXPECT_TRUE(holds(header, model.header))
            << in_words(pieces, receive_at_most) << "\nexpected "
            << testing::PrintToString(model.header) << "\n, not "
            << testing::PrintToString(header != nullptr ? header : "(none)");
        EXPECT_TRUE(holds(body, model.body)) << in_words(pieces, receive_at_most) << "\nexpected "
                                             << testing::PrintToString(model.body) << "\n, not "
                                             << testing::PrintToString(body != nullptr ? body : "");
        EXPECT_STREQ(web_last_error(), "earlier");
        std::free(header);
        std::free(body);
        return model;
    }
};
