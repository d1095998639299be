// A long text of a reply with every call failing in turn; see tests/failures.
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"
#include "tests/web/transaction/failing_exchange.h"
#include "web/reply_text.h"

namespace {

using corvella::make_reply_text;
using corvella::release_reply_text;
using corvella::reply_text;
using corvella::reserve_reply_text;

constexpr std::size_t long_text_length = std::size_t{16} << 20;

/// A text so long that its memory is populated ahead. A system that refuses changes nothing.
FailureScenario long_reply_text()
{
    return {"LongReplyText",
            {"web_transaction"}, // a part of it
            {Call::Realloc, Call::Advise},
            nullptr,
            [] {
                reply_text text = make_reply_text();
                for (int part = 0; part < 2; ++part) {
                    std::memset(reserve_reply_text(text, long_text_length / 2), 'x',
                                long_text_length / 2);
                    text.length += long_text_length / 2;
                }
                reserve_reply_text(text, 1);
                running.body = release_reply_text(text);
            },
            [] {
                const bool is_whole =
                    running.body != nullptr && std::strspn(running.body, "x") == long_text_length;
                std::free(running.body);
                running.body = nullptr;
                return std::string(is_whole ? "whole" : "");
            },
            "whole",
            [](const Failure &failure) -> std::string {
                return is_out_of_memory(failure) ? "std::bad_alloc " : "whole";
            }};
}

} // namespace

std::vector<FailureScenario> reply_text_scenarios()
{
    return {long_reply_text()};
}
