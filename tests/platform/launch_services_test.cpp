#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/platform.h"
#include "support/c-utils.h"
#include "tests/frameworks/stand_ins.h"

namespace {

using Texts = std::vector<std::string>;

constexpr int no_url = -30773;

class OpenUrl : public FrameworksTest {};
class OpenFile : public FrameworksTest {};
class OpenFsRef : public FrameworksTest {};
class OpenDocument : public FrameworksTest {};

int open_whole_url(const std::string &text)
{
    return open_url(text.data(), static_cast<long>(text.size()));
}

// The two operations of that name stand side by side.
static_assert(std::is_same_v<decltype(open_file("")), int>);
static_assert(std::is_same_v<decltype(open_file("", "", 0)), std::FILE *>);

TEST_F(OpenUrl, OpensTheUrlAndAsksForNoOutput)
{
    EXPECT_EQ(open_whole_url("http://www.morvane.example/a?b=c%20d#e"), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"url http://www.morvane.example/a?b=c%20d#e"});
    ASSERT_EQ(stand_ins.calls_of("LSOpenCFURLRef").size(), 1u);
    EXPECT_EQ(stand_ins.calls_of("LSOpenCFURLRef")[0], Texts{"null"});
}

TEST_F(OpenUrl, ReadsExactlyTheGivenNumberOfBytes)
{
    const char text[] = "http://a.example/page and more";
    EXPECT_EQ(open_url(text, static_cast<long>(std::strlen("http://a.example/"))), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"url http://a.example/"});
}

TEST_F(OpenUrl, NeedsNoEndBehindTheBytes)
{
    const std::string text = "http://a.example/";
    const std::vector<char> bytes(text.begin(), text.end());
    EXPECT_EQ(open_url(bytes.data(), static_cast<long>(bytes.size())), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"url http://a.example/"});
}

TEST_F(OpenUrl, DoesNotStopAtANulWithinTheLength)
{
    const std::string text("http://a.example/\0b", 19);
    EXPECT_EQ(open_whole_url(text), no_url);
    ASSERT_EQ(stand_ins.calls_of("CFURLCreateWithBytes").size(), 1u);
    EXPECT_EQ(stand_ins.calls_of("CFURLCreateWithBytes")[0][0], text);
}

TEST_F(OpenUrl, MakesTheUrlInTheSystemsEncodingWithoutABase)
{
    stand_ins.system_encoding = kCFStringEncodingISOLatin1;
    EXPECT_EQ(open_whole_url("http://a.example/"), 0);
    const std::vector<Texts> expected = {{"http://a.example/", "0x00000201", "null"}};
    EXPECT_EQ(stand_ins.calls_of("CFURLCreateWithBytes"), expected);
}

TEST_F(OpenUrl, OpensNothingWhenTheTextMakesNoUrl)
{
    const Texts texts = {"",
                         " ",
                         "http://a b/",
                         "http://a/%",
                         "http://a/%2",
                         "<a>",
                         "http://a/%zz",
                         "http://a/\xff",
                         "http://a/\xc3\xa9"};
    for (const std::string &text : texts) {
        SCOPED_TRACE(text);
        EXPECT_EQ(open_whole_url(text), no_url);
    }
    EXPECT_EQ(stand_ins.calls_of("CFURLCreateWithBytes").size(), texts.size());
    EXPECT_EQ(stand_ins.opened, Texts{});
}

TEST_F(OpenUrl, OpensNothingWhenNoUrlCanBeMade)
{
    stand_ins.failing = {"CFURLCreateWithBytes"};
    EXPECT_EQ(open_whole_url("http://a.example/"), no_url);
    EXPECT_EQ(stand_ins.opened, Texts{});
}

TEST_F(OpenUrl, AsksForNoUrlOfANegativeLength)
{
    for (const long length : {-1L, LONG_MIN}) {
        EXPECT_EQ(open_url("http://a.example/", length), no_url);
    }
    EXPECT_TRUE(stand_ins.calls_of("CFURLCreateWithBytes").empty());
    EXPECT_EQ(stand_ins.opened, Texts{});
}

TEST_F(OpenUrl, GivesBackTheStatusUnchanged)
{
    for (const int status : {0, 1, -1, -43, -10814, INT_MAX, INT_MIN}) {
        stand_ins.open_status = status;
        EXPECT_EQ(open_whole_url("http://a.example/"), status);
    }
}

TEST_F(OpenFile, OpensThePathAndAsksForNoOutput)
{
    stand_ins.files = {"/Users/a/b c.txt"};
    EXPECT_EQ(open_file("/Users/a/b c.txt"), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"file /Users/a/b c.txt"});
    const std::vector<Texts> no_output = {{"null"}};
    EXPECT_EQ(stand_ins.calls_of("LSOpenFSRef"), no_output);
}

TEST_F(OpenFile, TakesEveryTextForAPath)
{
    EXPECT_EQ(open_file("http://a.example/"), 0);
    const std::vector<Texts> converted = {{"http://a.example/"}};
    EXPECT_EQ(stand_ins.calls_of("FSPathMakeRef"), converted);
    EXPECT_TRUE(stand_ins.calls_of("CFURLCreateWithBytes").empty());
}

TEST_F(OpenFile, GivesBackTheStatusUnchanged)
{
    stand_ins.files = {"/a"};
    for (const int status : {0, 1, -1, -43, -10814, INT_MAX, INT_MIN}) {
        stand_ins.open_status = status;
        EXPECT_EQ(open_file("/a"), status);
    }
}

// Deliberate: what the conversion of the path says is not looked at.
TEST_F(OpenFile, GoesOnToOpenAfterAFailedConversion)
{
    EXPECT_EQ(open_file("/missing"), 0);
    stand_ins.open_status = -50;
    EXPECT_EQ(open_file("/missing"), -50);
    EXPECT_EQ(stand_ins.calls_of("LSOpenFSRef").size(), 2u);
}

TEST_F(OpenFile, GivesAFailedConversionNoEarlierReference)
{
    stand_ins.files = {"/a"};
    EXPECT_EQ(open_file("/a"), 0);
    EXPECT_EQ(open_file("/missing"), 0);
    EXPECT_EQ(stand_ins.opened_ref, std::string(sizeof(FSRef), '\0'));
}

TEST_F(OpenFsRef, OpensTheReferenceItselfAndAsksForNoOutput)
{
    FSRef ref;
    std::string bytes;
    for (std::size_t i = 0; i < sizeof ref.hidden; ++i) {
        ref.hidden[i] = static_cast<UInt8>(255 - i);
        bytes += static_cast<char>(ref.hidden[i]);
    }
    EXPECT_EQ(open_fsref(ref), 0);
    EXPECT_EQ(stand_ins.opened_ref, bytes);
    const std::vector<Texts> no_output = {{"null"}};
    EXPECT_EQ(stand_ins.calls_of("LSOpenFSRef"), no_output);
    EXPECT_TRUE(stand_ins.calls_of("FSPathMakeRef").empty());
}

TEST_F(OpenFsRef, TakesTheReferenceByValue)
{
    static_assert(std::is_same_v<decltype(&open_fsref), int (*)(FSRef)>);
    SUCCEED();
}

TEST_F(OpenFsRef, GivesBackTheStatusUnchanged)
{
    for (const int status : {0, 1, -1, -43, -10814, INT_MAX, INT_MIN}) {
        stand_ins.open_status = status;
        EXPECT_EQ(open_fsref(FSRef{}), status);
    }
}

TEST_F(OpenDocument, TakesATextThatBeginsWithASlashForAPath)
{
    stand_ins.files = {"/Users/a/http: b", "/"};
    EXPECT_EQ(open_document("/Users/a/http: b"), 0);
    EXPECT_EQ(open_document("/"), 0);
    const Texts expected = {"file /Users/a/http: b", "file /"};
    EXPECT_EQ(stand_ins.opened, expected);
    EXPECT_TRUE(stand_ins.calls_of("CFURLCreateWithBytes").empty());
}

TEST_F(OpenDocument, TakesEveryOtherTextForAUrl)
{
    stand_ins.files = {"notes.txt", "./a", "~/a"};
    for (const char *const text : {"http://a.example/", "notes.txt", "./a", "~/a", "file:///a"}) {
        SCOPED_TRACE(text);
        stand_ins.opened.clear();
        EXPECT_EQ(open_document(text), 0);
        EXPECT_EQ(stand_ins.opened, Texts{std::string("url ") + text});
    }
    EXPECT_TRUE(stand_ins.calls_of("FSPathMakeRef").empty());
}

TEST_F(OpenDocument, MakesTheUrlInTheSystemsEncodingWithoutABase)
{
    stand_ins.system_encoding = kCFStringEncodingASCII;
    EXPECT_EQ(open_document("http://a.example/"), 0);
    const std::vector<Texts> expected = {{"http://a.example/", "0x00000600", "null"}};
    EXPECT_EQ(stand_ins.calls_of("CFURLCreateWithBytes"), expected);
}

TEST_F(OpenDocument, AsksForNoOutput)
{
    open_document("/a");
    open_document("http://a.example/");
    const std::vector<Texts> no_output = {{"null"}};
    EXPECT_EQ(stand_ins.calls_of("LSOpenFSRef"), no_output);
    EXPECT_EQ(stand_ins.calls_of("LSOpenCFURLRef"), no_output);
}

TEST_F(OpenDocument, FoldsEveryFailureIntoMinusOne)
{
    stand_ins.files = {"/a"};
    for (const int status : {1, -1, -43, -10814, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(status);
        stand_ins.open_status = status;
        EXPECT_EQ(open_document("/a"), -1);
        EXPECT_EQ(open_document("http://a.example/"), -1);
    }
}

TEST_F(OpenDocument, FailsWhenTheTextMakesNoUrl)
{
    for (const char *const text : {"", "a b", "\xff", "a%"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(open_document(text), -1);
    }
    EXPECT_EQ(stand_ins.opened, Texts{});
}

TEST_F(OpenDocument, FailsWhenNoUrlCanBeMade)
{
    stand_ins.failing = {"CFURLCreateWithBytes"};
    EXPECT_EQ(open_document("http://a.example/"), -1);
    EXPECT_EQ(stand_ins.opened, Texts{});
}

// Deliberate: only the open call decides.
TEST_F(OpenDocument, GoesOnToOpenAfterAFailedConversion)
{
    EXPECT_EQ(open_document("/missing"), 0);
    EXPECT_EQ(stand_ins.calls_of("LSOpenFSRef").size(), 1u);
}

} // namespace
