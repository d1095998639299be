/// \file
/// The lists of the manual page.
#include <gtest/gtest.h>

#include "tool/generate/lists.h"

namespace {

using namespace corvella;

// A line that begins with a full stop or an apostrophe would be a request, and a backslash an
// escape.
TEST(ManualLists, HaveEachCommandAndOptionWithItsArgument)
{
    EXPECT_EQ(manual_lists(), R"(.Ss Commands
.Bl -tag -width Ds
.It Cm show Ar TARGET
Shows: it's \eall.
.It Cm keep Ar FILE
\&'Keeps' [it].
.It Cm stop
\&.Ends.
.El
.Ss Options of show
.Bl -tag -width Ds
.It Fl in Ar TARGET
Reads [from] a \efile: it's read.
.It Fl level Ar a:b\c
\&.Level of 'what' is shown.
.El
.Ss Options of keep
.Bl -tag -width Ds
.It Fl level
\&'Level' without an argument.
.It Fl out Ar FILE
Writes a file.
.El
.Ss General options
.Bl -tag -width Ds
.It Fl dry
Does nothing, not even "this".
.El
)");
}

} // namespace
