/// \file
/// What no command of the program shows of its output.
#include "tool/output.h"

#include <gtest/gtest.h>

#include "support/error.h"
#include "tests/harness/capture.h"

namespace {

using namespace corvella;

TEST(FramedMessage, EndsInFrontOfTheLineFeedsThatItBringsAlong)
{
    const ChildResult result = run_in_child([] {
        frame_output();
        report_message(3, "two\nlines\n\n");
    });
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "CORVELLATESTNote: two lines\nENDCORVELLATEST\n");
}

} // namespace
