/// \file
/// What the update query reads from the body of a reply, and how it stores it.
#include <climits>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "tests/web/fake_network.h"
#include "tests/web/update/update_call.h"
#include "web/update.h"
#include "web/web.h"

namespace {

using Text = std::optional<std::string>;

class UpdateReplyTest : public FakeNetworkTest {
protected:
    /// Runs the query; the pieces of the body come one by one.
    static UpdateOutcome read(const std::vector<std::string> &pieces, const UpdateQuery &query = {})
    {
        network.events = {data("HTTP/1.0 200 OK\r\n\r\n")};
        for (const std::string &piece : pieces) {
            network.events.push_back(data(piece));
        }
        network.events.push_back(peer_closes());
        return ask(query);
    }

    static UpdateOutcome read(const std::string &body, const UpdateQuery &query = {})
    {
        return read(body.empty() ? std::vector<std::string>() : std::vector<std::string>{body},
                    query);
    }

    static UpdateOutcome read(const char *body, const UpdateQuery &query = {})
    {
        return read(std::string(body), query);
    }

    /// Expects this result of each body, an empty error text, and no button and URL.
    struct Case {
        const char *body;
        int result;
        Text message;
        Text version;
    };

    static void expect_each(const std::vector<Case> &cases)
    {
        for (const Case &c : cases) {
            SCOPED_TRACE(testing::PrintToString(c.body));
            const UpdateOutcome outcome = read(c.body);
            EXPECT_EQ(outcome.result, c.result);
            EXPECT_EQ(outcome.message, c.message);
            EXPECT_EQ(outcome.version, c.version);
            EXPECT_EQ(outcome.url, std::nullopt);
            EXPECT_EQ(outcome.button, std::nullopt);
            EXPECT_EQ(outcome.error, "");
        }
    }
};

using UpdateReply = UpdateReplyTest;
using UpdateDestination = UpdateReplyTest;

constexpr std::nullopt_t none = std::nullopt;

} // namespace

TEST_F(UpdateReply, FillsAllFourFields)
{
    const UpdateOutcome outcome = read("Version: 5.2\nURL: http://x.test:80/a?b:c\n"
                                       "Button: Get it\nMessage: A new one: 5.2.\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.version, "5.2");
    EXPECT_EQ(outcome.url, "http://x.test:80/a?b:c");
    EXPECT_EQ(outcome.button, "Get it");
    EXPECT_EQ(outcome.message, "A new one: 5.2.\n");
    EXPECT_EQ(outcome.error, "");
}

TEST_F(UpdateReply, FillsTheFieldsInAnyOrder)
{
    const UpdateOutcome outcome = read("Button: b\nURL: u\nVersion: v\nMessage: m");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.version, "v");
    EXPECT_EQ(outcome.url, "u");
    EXPECT_EQ(outcome.button, "b");
    EXPECT_EQ(outcome.message, "m");
}

TEST_F(UpdateReply, LeavesTheDestinationsOfMissingFieldsAlone)
{
    const UpdateOutcome outcome = read("URL: u\nMessage: m\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.url, "u");
    EXPECT_EQ(outcome.version, std::nullopt);
    EXPECT_EQ(outcome.button, std::nullopt);
}

TEST_F(UpdateReply, EndsInItsMessageWhateverLooksLikeAField)
{
    const UpdateOutcome outcome = read("Message: hi\nVersion: 5.2\nURL: u\nMessage: x\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.message, "hi\nVersion: 5.2\nURL: u\nMessage: x\n");
    EXPECT_EQ(outcome.version, std::nullopt);
    EXPECT_EQ(outcome.url, std::nullopt);
}

TEST_F(UpdateReply, KeepsTheMessagesLaterLinesAndItsLastLineFeed)
{
    expect_each({
        {"Message: a", 0, "a", none},
        {"Message: a\n", 0, "a\n", none},
        {"Message: a\n\nb: c\n\n", 0, "a\n\nb: c\n\n", none},
        {"Message: \n", 0, "\n", none},
    });
}

TEST_F(UpdateReply, WithoutAMessageFailsWithoutAnErrorTextButFillsWhatItHas)
{
    const UpdateOutcome outcome = read("Version: 5.2\nURL: u\nButton: b\n");
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.version, "5.2");
    EXPECT_EQ(outcome.url, "u");
    EXPECT_EQ(outcome.button, "b");
    EXPECT_EQ(outcome.message, std::nullopt);
    EXPECT_EQ(outcome.error, "");
}

TEST_F(UpdateReply, WithoutAColonFails)
{
    expect_each({
        {"", -1, none, none},
        {"\n", -1, none, none},
        {"Message", -1, none, none},
        {"Message hi\n", -1, none, none},
        {"one\ntwo\n", -1, none, none},
        {"Version: 5\nMessage\n", -1, none, "5"},
    });
}

// Deliberate: a name reaches from where the field before ended to the colon, over line ends.
TEST_F(UpdateReply, TakesALineWithoutAColonForThePartOfANameThatItIs)
{
    expect_each({
        {"hello\nVersion: 5\nMessage: hi\n", 0, "hi\n", none},
        {"hello\nMessage: hi\n", -1, none, none},
        {"\nMessage: hi\n", -1, none, none},
        {"\r\nMessage: hi\n", -1, none, none},
        {"Version: 5\n\nMessage: hi\n", -1, none, "5"},
        {"\nVersion: 4\nVersion: 5\nMessage: hi\n", 0, "hi\n", "5"},
    });
}

TEST_F(UpdateReply, SkipsFieldsThatItDoesNotKnow)
{
    expect_each({
        {"Size: 3\nMessage: hi", 0, "hi", none},
        {"Size: 3\nVersion: 5\nDate: 1jan09\nMessage: hi", 0, "hi", "5"},
        {": x\nMessage: hi", 0, "hi", none},
        {"::\nMessage: hi", 0, "hi", none},
        {"Size: 3\n", -1, none, none},
    });
}

TEST_F(UpdateReply, ComparesNamesWholeAndCaseSensitively)
{
    expect_each({
        {"version: 5\nVERSION: 5\nversioN: 5\nMessage: hi", 0, "hi", none},
        {"Versions: 5\nVersio: 5\nV: 5\nVersion : 5\n Version: 5\nMessage: hi", 0, "hi", none},
        {"message: hi\nMESSAGE: hi\n", -1, none, none},
        {"Messages: hi\nMessag: hi\nM: hi\nMessage : hi\n Message: hi\n", -1, none, none},
        {"url: u\nUrl: u\nURLs: u\nUR: u\nMessage: hi", 0, "hi", none},
        {"button: b\nBUTTON: b\nButtons: b\nButto: b\nMessage: hi", 0, "hi", none},
    });
}

// Deliberate: the byte behind the colon is skipped, whatever it is.
TEST_F(UpdateReply, LosesTheByteBehindTheColon)
{
    expect_each({
        {"Version:5.2\nMessage:hi\n", 0, "i\n", ".2"},
        {"Version:  5\nMessage:\thi", 0, "hi", " 5"},
        {"Version::5\nMessage::hi", 0, "hi", "5"},
        {"Version: \nMessage: hi", 0, "hi", ""},
        {"Version:5\nMessage:h", 0, "", ""},
    });
}

// Deliberate: that holds for a line feed too, so that the next line becomes the value.
TEST_F(UpdateReply, SkipsALineFeedBehindTheColon)
{
    expect_each({
        {"Version:\nURL: u\nMessage: hi", 0, "hi", "URL: u"},
        {"Version:\nMessage: hi\n", -1, none, "Message: hi"},
        {"Version:\nMessage: hi", -1, none, none},
        {"Version:\n\nMessage: hi", 0, "hi", ""},
        {":\nMessage: hi\n", -1, none, none},
        {"Message:\nhi", 0, "hi", none},
        {"Message:\n", 0, "", none},
    });
}

TEST_F(UpdateReply, MayEndRightBehindAColon)
{
    expect_each({
        {"Message:", 0, "", none},
        {"Message: ", 0, "", none},
        {"Version: 5\nMessage:", 0, "", "5"},
        {"Version:", -1, none, none},
        {"Version: ", -1, none, none},
        {"Version:\n", -1, none, none},
        {":", -1, none, none},
        {"Size:", -1, none, none},
        {"Version: 5\nSize:", -1, none, "5"},
    });
}

TEST_F(UpdateReply, DoesNotTakeAValueWithoutItsLineFeed)
{
    expect_each({
        {"Version: 5", -1, none, none},
        {"Version: 5\r", -1, none, none},
        {"Version: 4\nVersion: 5", -1, none, "4"},
    });
}

TEST_F(UpdateReply, KeepsTheCarriageReturnOfALine)
{
    expect_each({
        {"Version: 5.2\r\nMessage: hi\r\n", 0, "hi\r\n", "5.2\r"},
        {"Version: \r\nMessage:\r\n", 0, "\n", "\r"},
        {"Version: 5\rMessage: hi\n", -1, none, "5\rMessage: hi"},
    });
}

TEST_F(UpdateReply, KeepsTheLastOfSeveralFieldsOfAName)
{
    expect_each({
        {"Version: 10.5.3\nVersion: 2\nMessage: hi", 0, "hi", "2"},
        {"Version: 10.5.3\nVersion: \nMessage: hi", 0, "hi", ""},
    });
}

TEST_F(UpdateReply, KeepsBytesAbove127)
{
    expect_each({
        {"Version: \xff\x80\nMessage: Gr\xc3\xbc\xc3\x9f\x65", 0, "Gr\xc3\xbc\xc3\x9f\x65",
         "\xff\x80"},
        {"Version\xff: 5\nMessage: hi", 0, "hi", none},
    });
}

TEST_F(UpdateReply, LosesTheRestOfAChunkBehindANul)
{
    const std::string nul(1, '\0');
    UpdateOutcome outcome = read("Message: a" + nul + "b\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.message, "a");

    outcome = read("Version: 5" + nul + "\nMessage: hi\n");
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(outcome.version, std::nullopt);

    outcome = read({"Version: 5" + nul + "lost", "2\nMess" + nul, "age: h" + nul + nul, "i"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.version, "52");
    EXPECT_EQ(outcome.message, "hi");
}

TEST_F(UpdateReply, MayBeLongerThanOneChunk)
{
    const std::string url(3000, 'u');
    std::string message;
    for (int i = 0; i < 5000; ++i) {
        message += std::to_string(i) + '\n';
    }
    UpdateQuery query;
    query.capacity = 65536;
    const UpdateOutcome outcome = read("URL: " + url + "\nMessage: " + message, query);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.url, url);
    EXPECT_EQ(outcome.message, message);
}

TEST_F(UpdateDestination, ExceptForTheMessageMayBeNull)
{
    const char *const body = "Version: v\nURL: u\nButton: b\nMessage: m";
    for (int wanted = 0; wanted < 8; ++wanted) {
        SCOPED_TRACE(wanted);
        UpdateQuery query;
        query.wants_version = (wanted & 1) != 0;
        query.wants_url = (wanted & 2) != 0;
        query.wants_button = (wanted & 4) != 0;
        const UpdateOutcome outcome = read(body, query);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.message, "m");
        EXPECT_EQ(outcome.version, query.wants_version ? Text("v") : std::nullopt);
        EXPECT_EQ(outcome.url, query.wants_url ? Text("u") : std::nullopt);
        EXPECT_EQ(outcome.button, query.wants_button ? Text("b") : std::nullopt);
    }
}

// All bytes behind the text are NUL, which ask() checks together with the bytes around.
TEST_F(UpdateDestination, KeepsOneCharacterLessThanItsCapacity)
{
    struct {
        int capacity;
        const char *version;
        const char *message;
    } const cases[] = {
        {1, "", ""},        {2, "1", "a"},       {3, "12", "ab"},        {4, "123", "abc"},
        {5, "123", "abcd"}, {6, "123", "abcde"}, {1000, "123", "abcde"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.capacity);
        UpdateQuery query;
        query.capacity = c.capacity;
        const UpdateOutcome outcome =
            read("Version: 123\nURL: 123\nButton: 123\nMessage: abcde", query);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.version, c.version);
        EXPECT_EQ(outcome.url, c.version);
        EXPECT_EQ(outcome.button, c.version);
        EXPECT_EQ(outcome.message, c.message);
    }
}

TEST_F(UpdateDestination, OfNoCapacityIsNotWrittenAndTheMessageIsFoundAllTheSame)
{
    for (const int capacity : {0, -1, -64, INT_MIN}) {
        SCOPED_TRACE(capacity);
        UpdateQuery query;
        query.capacity = capacity;
        const UpdateOutcome outcome = read("Version: 1\nURL: 2\nButton: 3\nMessage: m", query);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.version, std::nullopt);
        EXPECT_EQ(outcome.url, std::nullopt);
        EXPECT_EQ(outcome.button, std::nullopt);
        EXPECT_EQ(outcome.message, std::nullopt);
        EXPECT_EQ(read("Version: 1\n", query).result, -1);
    }
}
