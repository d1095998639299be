#include <cfloat>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

#include "support/error.h"
#include "tests/harness/capture.h"
#include "tests/harness/full_device.h"
#include "tests/harness/long_numbers.h"
#include "tests/harness/write_stream.h"
#include "tests/support/error/facility_test.h"

namespace {

class PrintIndented : public FacilityTest {};
class PrintStream : public FacilityTest {};
class PrintIndent : public FacilityTest {};
class PrintLimits : public FacilityTest {};

std::string printed(int indent, const std::string &text)
{
    set_print_indent(indent);
    return capture_output([&] { print_indented("%s", text.c_str()); }).err;
}

struct IndentCase {
    int indent;
    const char *text;
    const char *output;
};

const IndentCase indent_cases[] = {
    {0, "", ""},
    {0, "a", "a"},
    {0, "a\nb\n", "a\nb\n"},
    {0, "\n\n", "\n\n"},
    {3, "a\nb\n", "...a\n...b\n"},
    {3, "a\nb", "...a\n...b"},
    {2, "x\n\ny", "..x\n..\n..y"},
    {2, "\n", "..\n"},
    {2, "\n\n", "..\n..\n"},
    {2, "\n\n\n", "..\n..\n..\n"},
    {2, "\na", "..\n..a"},
    {2, "", ".."},
    {1, "a", ".a"},
    {1, "..a", "...a"},
    {1, "a\r\nb\r", ".a\r\n.b\r"},
    {1, "a\rb", ".a\rb"},
    {1, "%s%n%d\n", ".%s%n%d\n"},
    {1, "\x80\xff\n\xff", ".\x80\xff\n.\xff"},
    {10, "a\n", "..........a\n"},
};

TEST_F(PrintIndented, StartsEveryLineWithTheDotsButNotBehindALastNewline)
{
    for (const IndentCase &c : indent_cases) {
        EXPECT_EQ(printed(c.indent, c.text), c.output) << c.indent << " " << c.text;
    }
}

TEST_F(PrintIndented, StartsWithTheDotsAgainInTheMiddleOfALineOfTheCallBefore)
{
    set_print_indent(2);
    const CapturedOutput output = capture_output([] {
        print_indented("a");
        print_indented("b\n");
        print_indented("c\n");
    });
    EXPECT_EQ(output.err, "..a..b\n..c\n");
}

TEST_F(PrintIndented, ExpandsItsArguments)
{
    EXPECT_EQ(capture_output([] { print_indented("%s=%05.1f%%\n", "cpu", 7.5); }).err,
              "cpu=007.5%\n");
}

TEST_F(PrintIndented, NeitherCountsNorReports)
{
    const std::int32_t before = message_count();
    set_message_hook([](int, const char *) -> int { std::abort(); });
    set_output_hook([](const char *, const char *) -> int { std::abort(); });
    EXPECT_EQ(printed(0, "a\n"), "a\n");
    EXPECT_EQ(message_count(), before);
}

TEST_F(PrintIndented, ReturnsZeroWhenTheFlushSucceeds)
{
    int result = -2;
    capture_output([&] { result = print_indented("%s", "abc"); });
    EXPECT_EQ(result, 0);
}

TEST_F(PrintIndented, ReturnsEofWhenTheFlushFails)
{
    SKIP_WITHOUT_FULL_DEVICE();
    std::FILE *full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    set_print_stream(full);
    EXPECT_EQ(print_indented("abc"), EOF);
    set_print_stream(nullptr);
    std::fclose(full);
}

// On purpose: the result is the flush's, which has nothing to do where every write goes straight
// on.
TEST_F(PrintIndented, ReturnsZeroAfterAFailedWriteWithoutABuffer)
{
    std::FILE *full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    std::setvbuf(full, nullptr, _IONBF, 0);
    set_print_stream(full);
    EXPECT_EQ(print_indented("abc"), 0);
    set_print_stream(nullptr);
    std::fclose(full);
}

/// A stream that keeps the pieces in which it was written.
class PieceStream {
public:
    explicit PieceStream(int buffering) : stream(open_write_stream(this, write_piece))
    {
        std::setvbuf(stream, nullptr, buffering, 1 << 18);
    }
    PieceStream(const PieceStream &) = delete;
    PieceStream &operator=(const PieceStream &) = delete;
    ~PieceStream()
    {
        std::fclose(stream);
    }

    std::FILE *const stream;
    std::vector<std::string> pieces;

private:
    static void write_piece(void *cookie, const char *bytes, std::size_t count)
    {
        static_cast<PieceStream *>(cookie)->pieces.emplace_back(bytes, count);
    }
};

TEST_F(PrintIndented, WritesTheWholeOutputWithOneCall)
{
    std::string lines;
    std::string dotted;
    for (int i = 0; i < 5000; ++i) {
        lines += "line\n";
        dotted += "..line\n";
    }
    PieceStream unbuffered(_IONBF);
    set_print_stream(unbuffered.stream);
    set_print_indent(2);
    print_indented("%s", lines.c_str());
    ASSERT_EQ(unbuffered.pieces.size(), 1U);
    EXPECT_EQ(unbuffered.pieces[0], dotted);
    set_print_stream(nullptr);
}

TEST_F(PrintIndented, FlushesABufferedStream)
{
    PieceStream buffered(_IOFBF);
    set_print_stream(buffered.stream);
    print_indented("a\nb");
    ASSERT_EQ(buffered.pieces.size(), 1U);
    EXPECT_EQ(buffered.pieces[0], "a\nb");
    set_print_stream(nullptr);
}

TEST_F(PrintStream, TakesThePrintedTextInsteadOfStandardError)
{
    set_print_stream(stdout);
    const CapturedOutput output = capture_output([] { print_indented("a\n"); });
    EXPECT_EQ(output.out, "a\n");
    EXPECT_EQ(output.err, "");
}

TEST_F(PrintStream, IsTheOneThatWasSet)
{
    set_print_stream(stdout);
    EXPECT_EQ(get_print_stream(), stdout);
    capture_output([] { print_indented("a\n"); });
    EXPECT_EQ(get_print_stream(), stdout);
    set_print_stream(stderr);
    EXPECT_EQ(get_print_stream(), stderr);
}

TEST_F(PrintStream, IsStandardErrorAfterNull)
{
    set_print_stream(stdout);
    set_print_stream(nullptr);
    EXPECT_EQ(get_print_stream(), stderr);
    EXPECT_EQ(printed(0, "a\n"), "a\n");
}

TEST_F(PrintIndent, IsNoneForZeroAndForNegativeNumbers)
{
    for (const int indent : {0, -1, -5, INT_MIN}) {
        set_print_indent(7);
        EXPECT_EQ(printed(indent, "a\nb\n"), "a\nb\n") << indent;
    }
}

TEST_F(PrintIndent, StaysInForceUntilItIsSetAgain)
{
    set_print_indent(1);
    const CapturedOutput output = capture_output([] {
        print_indented("a\n");
        print_indented("b\n");
        set_print_indent(2);
        print_indented("c\n");
    });
    EXPECT_EQ(output.err, ".a\n.b\n..c\n");
}

TEST_F(PrintLimits, CutTheExpansionAt65535Characters)
{
    for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 70000U, 200000U}) {
        EXPECT_EQ(printed(0, counting_text(length)), counting_text(length < 65535 ? length : 65535))
            << length;
    }
}

TEST_F(PrintLimits, CutTheExpansionByTheIndentMore)
{
    for (const int indent : {1, 2, 100, 65000, 65533, 65534}) {
        const std::size_t dots = static_cast<std::size_t>(indent);
        EXPECT_EQ(printed(indent, counting_text(65535 - dots)),
                  many(dots, '.') + counting_text(65535 - dots))
            << indent;
        EXPECT_EQ(printed(indent, counting_text(65536 - dots)),
                  many(dots, '.') + counting_text(65535 - dots))
            << indent;
        EXPECT_EQ(printed(indent, counting_text(100000)),
                  many(dots, '.') + counting_text(65535 - dots))
            << indent;
    }
}

TEST_F(PrintLimits, PutNoDotsBehindANewlineThatTheCutBringsToTheEnd)
{
    EXPECT_EQ(printed(2, many(65532) + "\nb"), ".." + many(65532) + "\n");
}

TEST_F(PrintLimits, CutTheDottedOutputAt65536Bytes)
{
    // Every line feed but the last brings a dot: 65,534 of them would make 131,068 bytes.
    std::string expected;
    for (int i = 0; i < 32768; ++i) {
        expected += ".\n";
    }
    EXPECT_EQ(printed(1, many(65534, '\n')), expected);
}

TEST_F(PrintLimits, CutTheDottedOutputInsideTheDots)
{
    // 20,001 bytes a line: the buffer ends among the dots of the fourth.
    const std::string line = many(20000, '.') + "\n";
    EXPECT_EQ(printed(20000, "\n\n\n\n\n\n"), line + line + line + many(65536 - 3 * 20001, '.'));
}

TEST_F(PrintLimits, CutTheDottedOutputInsideALine)
{
    // Three lines of 15,002 bytes and the dots of a fourth leave 5,530 bytes for its text.
    const std::string text = "a\nb\nc\n" + counting_text(10000);
    const std::string dots = many(15000, '.');
    EXPECT_EQ(printed(15000, text),
              dots + "a\n" + dots + "b\n" + dots + "c\n" + dots + counting_text(5530));
}

TEST_F(PrintLimits, LeaveAnOutputOfExactly65536BytesWhole)
{
    // 65,534 characters of text, one newline among them, and a dot before each of two lines.
    const std::string text = many(30000) + "\n" + counting_text(35533);
    EXPECT_EQ(printed(1, text), "." + many(30000) + "\n." + counting_text(35533));
}

TEST_F(PrintLimits, FillTheOutputWithDotsForAnIndentOfTheBuffersSizeAndMore)
{
    for (const int indent : {65536, 65537, 70000, 1 << 20, INT_MAX}) {
        EXPECT_EQ(printed(indent, "abc\n"), many(65536, '.')) << indent;
        EXPECT_EQ(printed(indent, ""), many(65536, '.')) << indent;
    }
}

TEST_F(PrintLimits, KeepNothingOfTheTextForAnIndentThatTakesTheWholeExpansion)
{
    EXPECT_EQ(printed(65535, "abc\n"), many(65535, '.'));
}

TEST_F(PrintLimits, KeepOneCharacterForTheIndentBeforeThat)
{
    EXPECT_EQ(printed(65534, "abc\n"), many(65534, '.') + "a");
}

TEST_F(PrintLimits, HoldForTheLargestNumbers)
{
    const std::string text = greatest_double_text + precise_half_text;
    for (const std::size_t kept : {1U, 309U, 316U, 317U, 4317U, 4318U}) {
        set_print_indent(static_cast<int>(65535 - kept));
        EXPECT_EQ(capture_output([] { print_indented("%f%.4000f", DBL_MAX, 0.5); }).err,
                  many(65535 - kept, '.') + text.substr(0, kept))
            << kept;
    }
}

TEST_F(PrintLimits, HoldForTheLineOfAMessageToo)
{
    set_message_hook([](int, const char *) -> int { return 0; });
    set_print_indent(65535 - 4);
    const CapturedOutput output = capture_output([] { report_message(9, "disk"); });
    EXPECT_EQ(output.err, many(65535 - 4, '.') + "Erro");
}

} // namespace
