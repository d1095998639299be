// Input: a line with the width, the indent and the first column, then the text.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/check.h"
#include "fuzz/input.h"
#include "support/c-utils.h"
#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/wrap_model.h"

namespace {

/// Room for a break at every byte would take more than a fuzzer may have.
bool takes_too_much_room(const std::string &text, int indent)
{
    const auto breaks = std::count_if(text.begin(), text.end(), is_blank) + 1;
    return static_cast<long long>(breaks) * indent > 100000;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    std::string numbers = input.line();
    Layout layout;
    layout.width = Input::number(numbers);
    layout.indent = Input::number(numbers);
    layout.first_column = Input::number(numbers);
    const std::string text = input.text();
    if (takes_too_much_room(text, layout.indent)) {
        return 0;
    }
    const Wrapped expected = plainly_wrapped(text, layout);
    const auto indent = static_cast<std::size_t>(std::max(layout.indent, 0));
    // Just the room that the contract asks for.
    const ExactBuffer buffer(text, expected.breaks * indent);
    wrap_text_in_place(buffer.data(), layout.width, layout.indent, layout.first_column);
    expect_equal(buffer.text(), expected.text, "wrap_text_in_place");
    expect(buffer.intact(), "nothing is written around the text");
    return 0;
}
