#include "support/c-utils/copy.h"

#include <climits>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "tests/harness/capture.h"
#include "tests/support/c-utils/exact_buffer.h"

namespace {

unsigned char *as_bytes(const ExactBuffer &buffer)
{
    return reinterpret_cast<unsigned char *>(buffer.data());
}

/// A length-prefixed string of \p length bytes 1, 2, 3, ... with a NUL wherever they wrap.
std::string counted(int length)
{
    std::string text(1, static_cast<char>(length));
    for (int i = 1; i <= length; ++i) {
        text.push_back(static_cast<char>(i % 7));
    }
    return text;
}

ExactBuffer block_of(const std::string &bytes)
{
    ExactBuffer buffer(bytes.size());
    std::memcpy(buffer.data(), bytes.data(), bytes.size());
    return buffer;
}

TEST(CopyCountedString, CopiesTheLengthByteAndAsManyBytesBehindIt)
{
    for (const int length : {0, 1, 2, 6, 127, 128, 254, 255}) {
        const std::string text = counted(length);
        const ExactBuffer source = block_of(text);
        const ExactBuffer destination(text.size());
        EXPECT_EQ(copy_counted_string(as_bytes(destination), as_bytes(source)),
                  as_bytes(destination));
        EXPECT_EQ(destination.bytes(), text) << length;
        EXPECT_TRUE(destination.intact()) << length;
    }
}

TEST(CopyCountedString, CopiesNothingBehindTheLastCountedByte)
{
    const ExactBuffer source = block_of("\x02"
                                        "abcd");
    const ExactBuffer destination(5);
    copy_counted_string(as_bytes(destination), as_bytes(source));
    EXPECT_EQ(destination.bytes(), "\x02"
                                   "abZZ");
}

TEST(CopyCountedString, CopiesAnEmptyStringAsItsLengthByteAlone)
{
    const ExactBuffer source = block_of(std::string("\0xyz", 4));
    const ExactBuffer destination(4);
    copy_counted_string(as_bytes(destination), as_bytes(source));
    EXPECT_EQ(destination.bytes(), std::string("\0ZZZ", 4));
}

TEST(CopyCountedString, MovesAStringOntoAnOverlappingPlace)
{
    const std::string text = counted(200);
    const ExactBuffer forward = block_of(text + "...");
    copy_counted_string(as_bytes(forward) + 3, as_bytes(forward));
    EXPECT_EQ(forward.bytes().substr(3), text);

    const ExactBuffer backward = block_of("..." + text);
    copy_counted_string(as_bytes(backward), as_bytes(backward) + 3);
    EXPECT_EQ(backward.bytes().substr(0, text.size()), text);
}

struct BoundedCase {
    std::string source;
    std::size_t size;
    std::string bytes; ///< all bytes of the destination afterwards
};

TEST(CopyStringBounded, CopiesFillsWithNulAndAlwaysEndsInNul)
{
    const BoundedCase cases[] = {
        {"abc", 1, std::string("\0", 1)},
        {"abc", 2, std::string("a\0", 2)},
        {"abc", 3, std::string("ab\0", 3)},
        {"abc", 4, std::string("abc\0", 4)},
        {"abc", 5, std::string("abc\0\0", 5)},
        {"abc", 9, std::string("abc\0\0\0\0\0\0", 9)},
        {"", 1, std::string(1, '\0')},
        {"", 2, std::string(2, '\0')},
        {"", 100, std::string(100, '\0')},
        {"\x80\xff%s", 5, std::string("\x80\xff%s\0", 5)},
        {std::string(5000, 'x'), 4096, std::string(4095, 'x') + '\0'},
    };
    for (const BoundedCase &c : cases) {
        const ExactBuffer source(c.source);
        const ExactBuffer destination(c.size);
        EXPECT_EQ(copy_string_bounded(destination.data(), source.data(), c.size),
                  destination.data());
        EXPECT_EQ(destination.bytes(), c.bytes) << c.source << " into " << c.size;
        EXPECT_TRUE(destination.intact()) << c.source << " into " << c.size;
    }
}

TEST(CopyStringBounded, ReadsNoMoreOfTheSourceThanItCopies)
{
    const ExactBuffer source = block_of("abc"); // without a NUL
    const ExactBuffer destination(3);
    copy_string_bounded(destination.data(), source.data(), 3);
    EXPECT_EQ(destination.bytes(), std::string("ab\0", 3));
}

TEST(CopyStringBounded, WritesNothingWhenTheSizeIsZero)
{
    const ExactBuffer destination(3);
    EXPECT_EQ(copy_string_bounded(destination.data(), "abc", 0), destination.data());
    EXPECT_EQ(destination.bytes(), "ZZZ");
    EXPECT_EQ(copy_string_bounded(destination.data(), nullptr, 0), destination.data());
    EXPECT_EQ(destination.bytes(), "ZZZ");
    EXPECT_TRUE(destination.intact());
}

TEST(CopyStringBounded, DoesNothingWhenBothPointersAreNull)
{
    EXPECT_EQ(copy_string_bounded(nullptr, nullptr, 5), nullptr);
    EXPECT_EQ(copy_string_bounded(nullptr, nullptr, 0), nullptr);
}

TEST(CopyStringBounded, DoesNothingWhenTheDestinationIsNull)
{
    EXPECT_EQ(copy_string_bounded(nullptr, "abc", 5), nullptr);
}

TEST(CopyStringBounded, StoresAnEmptyStringForANullSource)
{
    for (const std::size_t size : {1U, 2U, 5U, 64U}) {
        const ExactBuffer destination(size);
        EXPECT_EQ(copy_string_bounded(destination.data(), nullptr, size), destination.data());
        EXPECT_EQ(destination.text(), "") << size;
        EXPECT_EQ(destination.bytes(), std::string(size, '\0')) << size;
        EXPECT_TRUE(destination.intact()) << size;
    }
}

/// Inserts into a block that has just the room, and returns what standard output got.
std::string insert(const std::string &text, ExactBuffer &target, int location)
{
    const ExactBuffer source(text);
    const CapturedOutput output =
        capture_output([&] { insert_string_into_string(source.data(), target.data(), location); });
    EXPECT_EQ(output.err, "");
    EXPECT_EQ(source.text(), text);
    return output.out;
}

struct InsertCase {
    std::string text;
    std::string target;
    int location;
    std::string result;
};

TEST(InsertStringIntoString, InsertsInPlaceAndPrintsTheResult)
{
    const InsertCase cases[] = {
        {"XY", "abc", 0, "XYabc"},
        {"XY", "abc", 1, "aXYbc"},
        {"XY", "abc", 2, "abXYc"},
        {"longer than the target", "abc", 1, "alonger than the targetbc"},
        {"X", "abcdefghijklmnopqrstuvwxyz", 3, "abcXdefghijklmnopqrstuvwxyz"},
        {"", "abc", 1, "abc"},
        {"", "", 0, ""},
        {"XY", "", 0, "XY"},
        {"%d%n", "100%s", 3, "100%d%n%s"},
        {"\x80\n", "\xff\xff", 1, "\xff\x80\n\xff"},
    };
    for (const InsertCase &c : cases) {
        ExactBuffer target(c.target, c.text.size());
        EXPECT_EQ(insert(c.text, target, c.location),
                  "insert_string_into_string: " + c.result + " \n");
        EXPECT_EQ(target.text(), c.result);
        EXPECT_TRUE(target.intact()) << c.result;
    }
}

TEST(InsertStringIntoString, AppendsAtTheTargetsLength)
{
    ExactBuffer target("abc", 2);
    EXPECT_EQ(insert("XY", target, 3), "insert_string_into_string: abcXY \n");
    EXPECT_EQ(target.text(), "abcXY");
}

TEST(InsertStringIntoString, ComplainsOfALocationOutsideTheTargetAndLeavesItAlone)
{
    const struct {
        int location;
        const char *printed;
    } cases[] = {
        {4, "insert_string_into_string: bad location 4, into_string length 3 \n"},
        {-1, "insert_string_into_string: bad location -1, into_string length 3 \n"},
        {INT_MAX, "insert_string_into_string: bad location 2147483647, into_string length 3 \n"},
        {INT_MIN, "insert_string_into_string: bad location -2147483648, into_string length 3 \n"},
    };
    for (const auto &c : cases) {
        ExactBuffer target("abc", 2);
        const std::string before = target.bytes();
        EXPECT_EQ(insert("XY", target, c.location), c.printed);
        EXPECT_EQ(target.bytes(), before) << c.location;
    }
}

TEST(InsertStringIntoString, ComplainsOfALocationBehindAnEmptyTarget)
{
    ExactBuffer target("", 2);
    EXPECT_EQ(insert("XY", target, 1),
              "insert_string_into_string: bad location 1, into_string length 0 \n");
    EXPECT_EQ(target.text(), "");
}

TEST(InsertStringIntoString, TracesEachOfSeveralInsertions)
{
    // Deliberate: the trace belongs to every successful insertion.
    const ExactBuffer target("c", 2);
    const CapturedOutput output = capture_output([&] {
        insert_string_into_string("b", target.data(), 0);
        insert_string_into_string("a", target.data(), 0);
        insert_string_into_string("a", target.data(), 9);
    });
    EXPECT_EQ(output.out, "insert_string_into_string: bc \n"
                          "insert_string_into_string: abc \n"
                          "insert_string_into_string: bad location 9, into_string length 3 \n");
}

TEST(InsertStringIntoString, AgreesWithAPlainInsertionOnRandomTexts)
{
    RandomTexts texts(31, "ab %\x80\xff\n", 9);
    for (int i = 0; i < 2000; ++i) {
        const std::string text = texts.next();
        const std::string before = texts.next();
        const unsigned location = texts.below(static_cast<unsigned>(before.size()) + 1);
        const std::string expected = before.substr(0, location) + text + before.substr(location);
        ExactBuffer target(before, text.size());
        ASSERT_EQ(insert(text, target, static_cast<int>(location)),
                  "insert_string_into_string: " + expected + " \n");
        ASSERT_EQ(target.text(), expected);
        ASSERT_TRUE(target.intact());
    }
}

} // namespace
