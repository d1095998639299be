#include "web/reply_header.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "web/web_error.h"

namespace {

constexpr char reply[] = "HTTP/1.0 200 OK\r\n"
                         "Content-Type: text/plain\r\n"
                         "Location:http://web1.test/a:b\r\n"
                         "X-Empty:\r\n"
                         "X-Blank: \t \r\n"
                         "X-Padded: \t a \t b \t \r\n"
                         "No colon here\r\n"
                         "location: second\r\n"
                         "\r";

/// The value that is found in the header, or "(none)".
std::string value_in(const char *header, const char *name)
{
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    const char *const found = find_reply_header(header, name, buffer, sizeof buffer);
    if (found == nullptr) {
        EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, '#'));
        return "(none)";
    }
    EXPECT_EQ(found, buffer);
    return found;
}

/// "complete", or the reason why not.
std::string completeness(const std::string &length_lines, const char *body)
{
    set_web_error("complete");
    const std::string header = "HTTP/1.0 200 OK\r\n" + length_lines + "\r";
    const int result = check_reply_complete(header.c_str(), body);
    const std::string text = web_last_error();
    EXPECT_EQ(result, text == "complete" ? 0 : -1);
    return text;
}

std::string incomplete(const std::string &have, const std::string &announced)
{
    return "Incomplete reply from web site: " + have + " of " + announced + " bytes";
}

} // namespace

TEST(FindReplyHeader, CopiesTheValueOfTheFirstMatchingLine)
{
    EXPECT_EQ(value_in(reply, "Content-Type"), "text/plain");
    EXPECT_EQ(value_in(reply, "Location"), "http://web1.test/a:b");
}

TEST(FindReplyHeader, IgnoresTheCaseOfAsciiLettersOnly)
{
    EXPECT_EQ(value_in(reply, "CONTENT-type"), "text/plain");
    EXPECT_EQ(value_in("A\n\xe4: b\n", "\xc4"), "(none)");
    EXPECT_EQ(value_in("A\n@: b\n", "`"), "(none)");
    EXPECT_EQ(value_in("A\n[: b\n", "{"), "(none)");
    EXPECT_EQ(value_in("A\nAZ: b\n", "az"), "b");
}

TEST(FindReplyHeader, RemovesBlanksAndTabsAroundTheValue)
{
    EXPECT_EQ(value_in(reply, "X-Padded"), "a \t b");
    EXPECT_EQ(value_in("A\nN:\t v", "N"), "v");
}

TEST(FindReplyHeader, FindsEmptyValues)
{
    EXPECT_EQ(value_in(reply, "X-Empty"), "");
    EXPECT_EQ(value_in(reply, "X-Blank"), "");
    EXPECT_EQ(value_in("A\nN:", "N"), "");
}

TEST(FindReplyHeader, ComparesTheWholeName)
{
    EXPECT_EQ(value_in(reply, "Content-Typ"), "(none)");
    EXPECT_EQ(value_in(reply, "Content-Types"), "(none)");
    EXPECT_EQ(value_in(reply, "ontent-Type"), "(none)");
    EXPECT_EQ(value_in(reply, "Location:http"), "(none)");
    EXPECT_EQ(value_in("A\nN : v\n", "N"), "(none)");
    EXPECT_EQ(value_in("A\n N: v\n", "N"), "(none)");
    EXPECT_EQ(value_in(reply, ""), "(none)");
    EXPECT_EQ(value_in("A\n: v\n", ""), "v");
}

TEST(FindReplyHeader, SkipsTheStatusLine)
{
    EXPECT_EQ(value_in("N: status\r\nN: v\r\n", "N"), "v");
    EXPECT_EQ(value_in("N: status", "N"), "(none)");
}

TEST(FindReplyHeader, SkipsLinesWithoutAColon)
{
    EXPECT_EQ(value_in(reply, "No colon here"), "(none)");
    EXPECT_EQ(value_in("A\nN\nN: v\n", "N"), "v");
}

TEST(FindReplyHeader, AcceptsAnyLineEnd)
{
    EXPECT_EQ(value_in("A\nN: v\nM: w\n", "N"), "v");
    EXPECT_EQ(value_in("A\nN: v\r\r\nM: w\n", "N"), "v");
    EXPECT_EQ(value_in("A\nN: v\rM: w\n", "N"), "v\rM: w");
    EXPECT_EQ(value_in("A\nN: v", "N"), "v");
    EXPECT_EQ(value_in("A\nN: v\r", "N"), "v");
}

TEST(FindReplyHeader, DoesNotJoinFoldedLines)
{
    EXPECT_EQ(value_in("A\nN: v\r\n w\r\n", "N"), "v");
}

TEST(FindReplyHeader, FindsNothingWithoutHeader)
{
    EXPECT_EQ(value_in(nullptr, "N"), "(none)");
    EXPECT_EQ(value_in("", "N"), "(none)");
    EXPECT_EQ(value_in("\n", "N"), "(none)");
}

TEST(FindReplyHeader, TruncatesToTheBuffer)
{
    char buffer[] = "########";
    EXPECT_EQ(find_reply_header(reply, "Content-Type", buffer, 5), buffer);
    EXPECT_EQ(std::string(buffer, 8), std::string("text\0###", 8));
    EXPECT_EQ(find_reply_header(reply, "Content-Type", buffer, 1), buffer);
    EXPECT_EQ(std::string(buffer, 8), std::string("\0ext\0###", 8));
}

TEST(FindReplyHeader, KeepsAValueThatJustFits)
{
    char buffer[] = "#####";
    find_reply_header("A\nN: abc\n", "N", buffer, 4);
    EXPECT_EQ(std::string(buffer, 5), std::string("abc\0#", 5));
}

TEST(FindReplyHeader, WritesNothingForASizeBelowOne)
{
    char buffer[] = "####";
    EXPECT_EQ(find_reply_header(reply, "Content-Type", buffer, 0), buffer);
    EXPECT_EQ(find_reply_header(reply, "Content-Type", buffer, -1), buffer);
    EXPECT_EQ(find_reply_header(reply, "Content-Type", buffer, INT32_MIN), buffer);
    EXPECT_STREQ(buffer, "####");
}

TEST(ReplyComplete, NeedsTheAnnouncedBytes)
{
    EXPECT_EQ(completeness("Content-Length: 3\r\n", "abc"), "complete");
    EXPECT_EQ(completeness("Content-Length: 3\r\n", "abcd"), "complete");
    EXPECT_EQ(completeness("Content-Length: 4\r\n", "abc"), incomplete("3", "4"));
    EXPECT_EQ(completeness("content-length:1000\n", "abc"), incomplete("3", "1000"));
    EXPECT_EQ(completeness("Content-Length: 1\r\n", ""), incomplete("0", "1"));
    EXPECT_EQ(completeness("Content-Length: 0\r\n", ""), "complete");
}

TEST(ReplyComplete, CountsANullBodyAsEmpty)
{
    EXPECT_EQ(completeness("Content-Length: 1\r\n", nullptr), incomplete("0", "1"));
    EXPECT_EQ(completeness("Content-Length: 0\r\n", nullptr), "complete");
}

TEST(ReplyComplete, CannotBeJudgedWithoutContentLength)
{
    EXPECT_EQ(completeness("", ""), "complete");
    EXPECT_EQ(completeness("X-Content-Length: 5\r\n", ""), "complete");
    set_web_error("earlier");
    EXPECT_EQ(check_reply_complete(nullptr, nullptr), 0);
    EXPECT_EQ(check_reply_complete("", "abc"), 0);
    EXPECT_STREQ(web_last_error(), "earlier");
}

TEST(ReplyComplete, IgnoresALengthOfMoreThanDigits)
{
    for (const char *value : {"", "-5", "+5", "5 5", "5,5", "5x", "x5", "0x5", "5.0", "/", ":"}) {
        EXPECT_EQ(completeness("Content-Length: " + std::string(value) + "\r\n", ""), "complete")
            << value;
    }
}

TEST(ReplyComplete, ReadsTheFirstLengthOnly)
{
    EXPECT_EQ(completeness("Content-Length: 1\r\nContent-Length: 9\r\n", "a"), "complete");
    EXPECT_EQ(completeness("Content-Length: x\r\nContent-Length: 9\r\n", "a"), "complete");
}

TEST(ReplyComplete, ReadsLeadingZeros)
{
    EXPECT_EQ(completeness("Content-Length: " + std::string(100, '0') + "3\r\n", "abc"),
              "complete");
    EXPECT_EQ(completeness("Content-Length: 0004\r\n", "abc"), incomplete("3", "4"));
}

TEST(ReplyComplete, SaturatesAtTheGreatestNumber)
{
    const std::string greatest = "9223372036854775807";
    for (const char *value : {"9223372036854775807", "9223372036854775808", "9223372036854775810",
                              "18446744073709551617", "99999999999999999999999999999999"}) {
        EXPECT_EQ(completeness("Content-Length: " + std::string(value) + "\r\n", "abc"),
                  incomplete("3", greatest))
            << value;
    }
    EXPECT_EQ(completeness("Content-Length: 9223372036854775806\r\n", "abc"),
              incomplete("3", "9223372036854775806"));
    EXPECT_EQ(completeness("Content-Length: 4294967296\r\n", "abc"), incomplete("3", "4294967296"));
}
