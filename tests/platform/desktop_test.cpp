#include "tool/desktop.h"

#include <climits>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "support/error.h"
#include "tests/frameworks/stand_ins.h"

namespace {

using namespace corvella;

using Texts = std::vector<std::string>;
using Messages = std::vector<std::pair<int, std::string>>;

Messages messages;

int record_message(int level, const char *text)
{
    messages.emplace_back(level, text);
    return 0;
}

class OpenOnDesktop : public FrameworksTest {
protected:
    OpenOnDesktop() : print_stream_(get_print_stream()), hook_(set_message_hook(record_message))
    {
        messages.clear();
    }
    ~OpenOnDesktop() override
    {
        set_message_hook(hook_);
        set_print_stream(print_stream_);
    }

private:
    std::FILE *print_stream_;
    MessageHook hook_;
};

/// Whether one message was reported, an error that names \p target.
void expect_error_about(const std::string &target)
{
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].first, 9);
    const std::string said = "Open of " + target + " failed.";
    EXPECT_NE(messages[0].second.find(said), std::string::npos) << messages[0].second;
}

TEST_F(OpenOnDesktop, OpensAFileAndSaysNothing)
{
    stand_ins.files = {"/Users/a/b c.txt"};
    EXPECT_EQ(open_on_desktop("/Users/a/b c.txt"), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"file /Users/a/b c.txt"});
    EXPECT_EQ(messages, Messages{});
}

TEST_F(OpenOnDesktop, OpensAUrlAndSaysNothing)
{
    EXPECT_EQ(open_on_desktop("http://www.morvane.example/download.html"), 0);
    EXPECT_EQ(stand_ins.opened, Texts{"url http://www.morvane.example/download.html"});
    EXPECT_EQ(messages, Messages{});
}

TEST_F(OpenOnDesktop, ReportsWhatCouldNotBeOpened)
{
    for (const char *const target : {"/Users/a/b.txt", "http://a.example/100%25/%73"}) {
        for (const int status : {1, -1, -43, -10814, INT_MAX, INT_MIN}) {
            SCOPED_TRACE(target);
            messages.clear();
            stand_ins.open_status = status;
            EXPECT_EQ(open_on_desktop(target), 1);
            expect_error_about(target);
        }
    }
}

TEST_F(OpenOnDesktop, ReportsATextThatMakesNoUrl)
{
    for (const char *const target : {"a b", "100%s", "http://a.example/\xff"}) {
        SCOPED_TRACE(target);
        messages.clear();
        EXPECT_EQ(open_on_desktop(target), 1);
        expect_error_about(target);
    }
    EXPECT_EQ(stand_ins.opened, Texts{});
}

TEST_F(OpenOnDesktop, ReportsThatNoUrlCouldBeMade)
{
    stand_ins.failing = {"CFURLCreateWithBytes"};
    EXPECT_EQ(open_on_desktop("http://a.example/"), 1);
    expect_error_about("http://a.example/");
    EXPECT_EQ(stand_ins.opened, Texts{});
}

} // namespace
