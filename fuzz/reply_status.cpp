// Input: a reply's header.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/check.h"
#include "fuzz/input.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/reply_status_model.h"
#include "web/web.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string header = Input(data, size).text();
    const std::string expected = scanned_verdict(header);
    set_web_error("(accepted)");
    const ExactBuffer text(header);
    const int result = check_reply_status(text.data());
    expect_equal(result, expected == "(accepted)" ? 0 : -1, "check_reply_status");
    expect_equal(web_last_error(), expected, "the last error text");
    expect_equal(text.text(), header, "the header afterwards");
    return 0;
}
