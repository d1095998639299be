#include "web/reply_status.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "tests/web/reply_status_model.h"
#include "web/web_error.h"

namespace {

/// The error text that the check leaves, or "(accepted)"; the result must agree with it.
std::string verdict(const std::string &header)
{
    set_web_error("(accepted)");
    const int result = check_reply_status(header.c_str());
    const std::string text = web_last_error();
    EXPECT_EQ(result, text == "(accepted)" ? 0 : -1) << header;
    return text;
}

} // namespace

TEST(ReplyStatus, IsAcceptedFrom200To299)
{
    for (const int status : {200, 201, 204, 250, 298, 299}) {
        EXPECT_EQ(verdict("HTTP/1.0 " + std::to_string(status) + " OK\r\n\r"), "(accepted)");
    }
}

TEST(ReplyStatus, IsRefusedOutside200To299)
{
    for (const int status : {0, 1, 20, 100, 199, 300, 302, 404, 500, 599, 1000, 2000, -200}) {
        EXPECT_EQ(verdict("HTTP/1.0 " + std::to_string(status) + " Not now\r\nA: b\r\n\r"),
                  "Bad HTTP status " + std::to_string(status) + " from web site: Not now");
    }
}

TEST(ReplyStatus, MayHaveAnyVersion)
{
    for (const char *version : {"1.0", "1.1", "0.9", "2.0", "10.200", "-1.-1", "+1.+0", "01.00"}) {
        EXPECT_EQ(verdict("HTTP/" + std::string(version) + " 200 OK\r\n"), "(accepted)");
    }
}

TEST(ReplyStatus, IsTheFirstOneAnywhereInTheHeader)
{
    EXPECT_EQ(verdict("A: b\r\nHTTP/1.0 200 OK\r\n"), "(accepted)");
    EXPECT_EQ(verdict("xHTTP/1.0 200 OK"), "(accepted)");
    EXPECT_EQ(verdict("HTTPHTTP/1.0 200 OK"), "(accepted)");
    EXPECT_EQ(verdict("HTTP/1.0 404 No\r\nHTTP/1.0 200 OK\r\n"), bad_status("404 No"));
    EXPECT_EQ(verdict("HTTP/HTTP/1.0 200 OK"), unparsable("HTTP/1.0 200 OK"));
}

TEST(ReplyStatus, NeedsAnHttpHeader)
{
    for (const char *header : {"", "\r", "http/1.0 200 OK\r\n", "HTTP 1.0 200 OK", "HTTP", "HTT",
                               "H T T P /1.0 200 OK", "A: b\r\n\r"}) {
        EXPECT_EQ(verdict(header), "Invalid non-HTTP header string returned from web site");
    }
}

TEST(ReplyStatus, OfANullHeaderIsThatOfAnEmptyOne)
{
    EXPECT_EQ(check_reply_status(nullptr), -1);
    EXPECT_STREQ(web_last_error(), "Invalid non-HTTP header string returned from web site");
}

TEST(ReplyStatus, QuotesTheWholeRemainderThatItCannotRead)
{
    for (const char *remainder :
         {"", "1", "1.", "1.0", "1.0 ", "1.0 200", "1.0 200 ", "1.0 200 \r\n", "x", ".0 200 OK",
          "1 .0 200 OK", "1,0 200 OK", "1.x 200 OK", "1.0 x\r\nA: b\r\n\r", "0x1.0 200 OK",
          "1.0 - 200 OK", "1.0200 OK", "%s%n\r\nB\r\n", "a\x80\xff"}) {
        EXPECT_EQ(verdict("HTTP/" + std::string(remainder)), unparsable(remainder));
        EXPECT_EQ(verdict("before HTTP/" + std::string(remainder)), unparsable(remainder));
    }
}

TEST(ReplyStatus, QuotesARemainderOfAnyLength)
{
    const std::string remainder = "x" + std::string(100000, 'y') + "\r\n\r";
    EXPECT_EQ(verdict("HTTP/" + remainder), unparsable(remainder));
}

TEST(ReplyStatus, NeedsAReason)
{
    EXPECT_EQ(verdict("HTTP/1.0 200\r\n"), unparsable("1.0 200\r\n"));
    EXPECT_EQ(verdict("HTTP/1.0 200\r\n\r"), unparsable("1.0 200\r\n\r"));
    EXPECT_EQ(verdict("HTTP/1.0 200 \t\r\n\r"), unparsable("1.0 200 \t\r\n\r"));
}

// Deliberate: the blank before the reason runs across line ends.
TEST(ReplyStatus, TakesTheNextLineForAMissingReason)
{
    EXPECT_EQ(verdict("HTTP/1.0 200\r\nServer: a\r\n\r"), "(accepted)");
    EXPECT_EQ(verdict("HTTP/1.0 404\r\nServer: a\r\n\r"), bad_status("404 Server: a"));
}

TEST(ReplyStatus, ReadsANumberBehindBlanksAndLineEnds)
{
    for (const char *remainder :
         {" 1.0 200 OK", "1. 0 200 OK", "1.0\t\v\f200\r\n\tOK", "1.0 +200 OK", "1.0 0200 OK",
          "1.0+200 OK", "1.0 200OK", "1.0 200-5", "1.0\r\n200\r\nOK"}) {
        EXPECT_EQ(verdict("HTTP/" + std::string(remainder)), "(accepted)") << remainder;
    }
}

TEST(ReplyStatus, GivesTheReasonUpToTheLineEnd)
{
    EXPECT_EQ(verdict("HTTP/1.0 404 \t Not\tfound \r\nA"), "Bad HTTP status 404 from web site: "
                                                           "Not\tfound ");
    EXPECT_EQ(verdict("HTTP/1.0 404 a\rb\n"), bad_status("404 a"));
    EXPECT_EQ(verdict("HTTP/1.0 404 a\nb\r"), bad_status("404 a"));
    EXPECT_EQ(verdict("HTTP/1.0 404 %s%n\x80\xff"), bad_status("404 %s%n\x80\xff"));
    EXPECT_EQ(verdict("HTTP/1.0 404x"), bad_status("404 x"));
    EXPECT_EQ(verdict("HTTP/1.0 404]^"), bad_status("404 ]^"));
}

TEST(ReplyStatus, CutsTheReasonAt127Characters)
{
    for (const std::size_t size : {1u, 126u, 127u, 128u, 129u, 5000u}) {
        const std::string kept(size < 127 ? size : 127, 'r');
        EXPECT_EQ(verdict("HTTP/1.0 500 " + std::string(size, 'r') + "\r\n"),
                  bad_status("500 " + kept));
        EXPECT_EQ(verdict("HTTP/1.0 200 " + std::string(size, 'r') + "\r\n"), "(accepted)");
    }
}

TEST(ReplyStatus, BeyondEveryNumberIsNotAccepted)
{
    for (const char *status : {"99999999999999999999", "-99999999999999999999", "2147483648"}) {
        EXPECT_NE(verdict("HTTP/1.0 " + std::string(status) + " OK"), "(accepted)") << status;
    }
}

TEST(ReplyStatus, AgreesWithTheLibrarysScanner)
{
    const std::vector<std::string> pieces = {
        "HTTP/", "HTTP", "/",    "1.0", "1.1", ".",  "200", "299", "300", "404", "0", "7",
        " ",     "\t",   "\r\n", "\n",  "\r",  "\v", "\f",  "-",   "+",   "OK",  "x", "\x80",
    };
    std::mt19937 random(404);
    int accepted = 0;
    int bad = 0;
    for (int round = 0; round < 200000; ++round) {
        std::string header = round % 4 != 0 ? "HTTP/" : "";
        header += round % 2 != 0 ? "1.0 2" : "";
        std::size_t digits = 0;
        for (std::size_t count = random() % 12; count > 0; --count) {
            const std::string &piece = pieces[random() % pieces.size()];
            // Longer numbers would have no defined result.
            digits = piece.find_first_not_of("0123456789") == std::string::npos ? digits + 3 : 0;
            header += digits <= 6 ? piece : " ";
        }
        const std::string expected = scanned_verdict(header);
        ASSERT_EQ(verdict(header), expected) << testing::PrintToString(header);
        accepted += expected == "(accepted)" ? 1 : 0;
        bad += expected.compare(0, 3, "Bad") == 0 ? 1 : 0;
    }
    EXPECT_GT(accepted, 1000);
    EXPECT_GT(bad, 1000);
}
