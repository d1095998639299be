/// \file
/// How often a message writes. Linux only: a packet pipe keeps the writes apart.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/error.h"

namespace {

/// What descriptor 2 is given while \p action runs, write by write.
template <typename Action> std::vector<std::string> writes_of(Action action)
{
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_DIRECT | O_NONBLOCK), 0);
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    action();
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(ends[1]);

    std::vector<std::string> writes;
    char packet[4096];
    ssize_t length;
    while ((length = read(ends[0], packet, sizeof packet)) > 0) {
        writes.emplace_back(packet, static_cast<std::size_t>(length));
    }
    close(ends[0]);
    return writes;
}

} // namespace

TEST(MessageWrites, AreOneForEachCopyOfTheMessage)
{
    const std::vector<std::string> writes = writes_of([] { report_message(9, "%s", "No disk"); });
    EXPECT_EQ(writes, (std::vector<std::string>{"Error: No disk\n", "Error: No disk\a\n"}));
}

TEST(MessageWrites, AreOneForIndentedText)
{
    set_print_indent(2);
    const std::vector<std::string> writes = writes_of([] { print_indented("a\nb\n"); });
    set_print_indent(0);
    EXPECT_EQ(writes, std::vector<std::string>{"..a\n..b\n"});
}
