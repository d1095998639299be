#include "tool/terminal.h"

#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

#include "tests/harness/terminal.h"

namespace {

using namespace corvella;

/// Runs with an environment that has no COLUMNS.
class TerminalColumns : public testing::Test {
protected:
    TerminalColumns()
    {
        unsetenv("COLUMNS");
    }

    /// On a terminal of so many columns.
    int on_a_terminal(int columns) const
    {
        winsize window = {};
        window.ws_col = static_cast<unsigned short>(columns);
        EXPECT_EQ(ioctl(terminal_.program_end(), TIOCSWINSZ, &window), 0);
        return terminal_columns(terminal_.program_end());
    }

private:
    Terminal terminal_;
};

TEST_F(TerminalColumns, AreThoseOfTheTerminal)
{
    for (const int columns : {1, 2, 79, 80, 65535}) {
        EXPECT_EQ(on_a_terminal(columns), columns);
    }
}

TEST_F(TerminalColumns, AreSeventyNineWhereNothingTells)
{
    EXPECT_EQ(on_a_terminal(0), 79);
    EXPECT_EQ(terminal_columns(-1), 79);
    const int file = open("/dev/null", O_RDONLY);
    EXPECT_EQ(terminal_columns(file), 79);
    close(file);
}

TEST_F(TerminalColumns, AreThoseOfTheEnvironmentBeforeAll)
{
    for (const int columns : {1, 2, 9998, 9999}) {
        setenv("COLUMNS", std::to_string(columns).c_str(), 1);
        EXPECT_EQ(on_a_terminal(45), columns);
    }
    for (const char *const text : {"", "0", "-1", "10000", "80x", "x"}) {
        setenv("COLUMNS", text, 1);
        EXPECT_EQ(on_a_terminal(45), 45) << text;
    }
    unsetenv("COLUMNS");
}

} // namespace
