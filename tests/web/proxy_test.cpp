/// \file
/// The proxy settings of the command line. The system's settings are replaced by a stand-in, which
/// also tells whether it was asked.
#include "web/proxy.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/c-utils/exact_buffer.h"
#include "web/web.h"

namespace {

/// What the system's network settings hold; an empty host is no proxy.
struct SystemSettings {
    std::string host;
    std::int32_t port = 0;
    std::vector<std::size_t> asked_with; ///< the buffer size of each call
};

SystemSettings system_settings;

} // namespace

// Takes the place of the library's function in this program.
bool system_http_proxy(char *host_buffer, std::size_t buffer_size, std::int32_t *port_out)
{
    system_settings.asked_with.push_back(buffer_size);
    std::memset(host_buffer, 0, buffer_size);
    std::memcpy(host_buffer, system_settings.host.data(), system_settings.host.size());
    *port_out = system_settings.port;
    return !system_settings.host.empty();
}

namespace {

/// The arguments of the three options; those that are not given stay null.
struct Options {
    const char *proxy = nullptr;
    const char *user = nullptr;
    const char *password = nullptr;
};

class ProxyOption : public testing::Test {
protected:
    /// The record held something else before.
    ProxyOption()
    {
        system_settings = SystemSettings();
        std::memset(&settings_, 0x5a, sizeof settings_);
    }

    /// Fills the record from arguments that end where their NUL ends.
    int fill(const Options &options)
    {
        const ExactBuffer proxy(text_of(options.proxy));
        const ExactBuffer user(text_of(options.user));
        const ExactBuffer password(text_of(options.password));
        const int result =
            fill_proxy_settings(&settings_, options.proxy == nullptr ? nullptr : proxy.data(),
                                options.user == nullptr ? nullptr : user.data(),
                                options.password == nullptr ? nullptr : password.data());
        EXPECT_EQ(proxy.bytes(), text_of(options.proxy) + '\0');
        EXPECT_EQ(user.bytes(), text_of(options.user) + '\0');
        EXPECT_EQ(password.bytes(), text_of(options.password) + '\0');
        return result;
    }

    /// All 256 bytes of each text: the bounded copy fills with NUL.
    void expect_settings(const std::string &host, std::int32_t port, const std::string &user = "",
                         const std::string &password = "") const
    {
        EXPECT_EQ(std::string(settings_.proxy_host, 256), filled(host));
        EXPECT_EQ(settings_.proxy_port, port);
        EXPECT_EQ(std::string(settings_.user, 256), filled(user));
        EXPECT_EQ(std::string(settings_.password, 256), filled(password));
    }

    ProxySettings settings_;

private:
    static std::string text_of(const char *argument)
    {
        return argument == nullptr ? "" : argument;
    }

    static std::string filled(std::string text)
    {
        text.resize(256, '\0');
        return text;
    }
};

using ProxyOfTheSystem = ProxyOption;

} // namespace

TEST(ProxySettings, IsThreeTextsOf256BytesAndAnInteger)
{
    EXPECT_EQ(sizeof(ProxySettings), 772U);
    EXPECT_EQ(offsetof(ProxySettings, proxy_host), 0U);
    EXPECT_EQ(offsetof(ProxySettings, proxy_port), 256U);
    EXPECT_EQ(offsetof(ProxySettings, user), 260U);
    EXPECT_EQ(offsetof(ProxySettings, password), 516U);
}

TEST_F(ProxyOption, GivesHostAndPort)
{
    EXPECT_EQ(fill({"proxy.test:3128"}), 0);
    expect_settings("proxy.test", 3128);
}

TEST_F(ProxyOption, WinsOverTheSystemWhichIsNotAsked)
{
    system_settings.host = "system.test";
    system_settings.port = 8080;
    EXPECT_EQ(fill({"proxy.test:3128"}), 0);
    expect_settings("proxy.test", 3128);
    EXPECT_TRUE(system_settings.asked_with.empty());
}

TEST_F(ProxyOption, IsDividedAtTheFirstColon)
{
    struct {
        const char *option;
        const char *host;
        std::int32_t port;
    } const cases[] = {
        {"a:1", "a", 1},
        {"a:1:2", "a", 1},
        {"a:80:", "a", 80},
        {"a b@c/d:80", "a b@c/d", 80},
        {" a :80", " a ", 80},
        {"Proxy.TEST:80", "Proxy.TEST", 80},
        {"\xe9\xff:80", "\xe9\xff", 80},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.option);
        EXPECT_EQ(fill({c.option}), 0);
        expect_settings(c.host, c.port);
    }
}

TEST_F(ProxyOption, TakesAnEmptyHostWhichMeansNoProxy)
{
    system_settings.host = "system.test";
    system_settings.port = 8080;
    EXPECT_EQ(fill({":8080"}), 0);
    expect_settings("", 8080);
}

TEST_F(ProxyOption, ReadsThePortAsAtoiDoes)
{
    struct {
        const char *option;
        std::int32_t port;
    } const cases[] = {
        {"a:8080", 8080},   {"a:+80", 80},   {"a:-1", -1},    {"a: \t\n\v\f\r80", 80},
        {"a:  +80", 80},    {"a: -80", -80}, {"a:00080", 80}, {"a:80x", 80},
        {"a:8.9", 8},       {"a:80 81", 80}, {"a:8e3", 8},    {"a:1", 1},
        {"a:65535", 65535},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.option);
        EXPECT_EQ(fill({c.option}), 0);
        expect_settings("a", c.port);
    }
}

// Deliberate: only 0 is refused. A request later takes the port's lower 16 bits.
TEST_F(ProxyOption, TakesPortsBeyond16Bits)
{
    struct {
        const char *option;
        std::int32_t port;
    } const cases[] = {
        {"a:65536", 65536},           {"a:99999", 99999},   {"a:2147483647", 2147483647},
        {"a:-2147483648", INT32_MIN}, {"a:-65536", -65536},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.option);
        EXPECT_EQ(fill({c.option}), 0);
        expect_settings("a", c.port);
    }
}

// Whatever a word's size: 4294967296 must not read as 0.
TEST_F(ProxyOption, TakesAPortBeyond32BitsAsTheNearestWithin)
{
    struct {
        const char *option;
        std::int32_t port;
    } const cases[] = {
        {"a:2147483648", INT32_MAX},
        {"a:4294967296", INT32_MAX},
        {"a:4294967376", INT32_MAX},
        {"a:18446744073709551616", INT32_MAX},
        {"a:99999999999999999999999999999999999999", INT32_MAX},
        {"a:-2147483649", INT32_MIN},
        {"a:-4294967296", INT32_MIN},
        {"a:-99999999999999999999999999999999999999", INT32_MIN},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.option);
        EXPECT_EQ(fill({c.option}), 0);
        expect_settings("a", c.port);
    }
}

TEST_F(ProxyOption, MustHaveAColon)
{
    for (const char *option : {"", "proxy.test", "8080", "proxy.test 8080", "proxy.test;8080"}) {
        SCOPED_TRACE(option);
        EXPECT_EQ(fill({option}), -1);
    }
}

TEST_F(ProxyOption, MustHaveAPortThatDoesNotReadAsZero)
{
    for (const char *option :
         {"a:",       ":",      "a:0",    "a:000", "a:-0",   "a:+0",
          "a:0x50",   "a:x80",  "a:http", "a: ",   "a:+",    "a:-",
          "a:+-80",   "a:- 80", "a:,80",  "a::80", "a:\xb2", "http://proxy.test:80",
          "[::1]:80", "a:0:80"}) {
        SCOPED_TRACE(option);
        EXPECT_EQ(fill({option}), -1);
    }
}

TEST_F(ProxyOption, DoesNotFallBackOnTheSystemWhenItIsInvalid)
{
    system_settings.host = "system.test";
    system_settings.port = 8080;
    EXPECT_EQ(fill({"proxy.test"}), -1);
    EXPECT_EQ(fill({"proxy.test:0"}), -1);
    EXPECT_EQ(fill({""}), -1);
    EXPECT_TRUE(system_settings.asked_with.empty());
}

TEST_F(ProxyOption, IsInvalidWhateverTheCredentialsAre)
{
    EXPECT_EQ(fill({"proxy.test", "ann", "secret"}), -1);
    EXPECT_EQ(fill({"proxy.test:0", "ann", "secret"}), -1);
}

TEST_F(ProxyOption, CutsAHostOfMoreThan255Characters)
{
    for (const std::size_t length : {254U, 255U, 256U, 257U, 1000U}) {
        SCOPED_TRACE(length);
        const std::string host = std::string(length - 1, 'h') + 'e';
        EXPECT_EQ(fill({(host + ":8080").c_str()}), 0);
        expect_settings(host.substr(0, 255), 8080);
    }
}

TEST_F(ProxyOption, ComesWithUserNameAndPassword)
{
    EXPECT_EQ(fill({"a:80", "ann", "secret"}), 0);
    expect_settings("a", 80, "ann", "secret");
}

TEST_F(ProxyOption, TakesTheCredentialsAsTheyStand)
{
    EXPECT_EQ(fill({"a:80", " ann:b@c ", "%41\t\xff:"}), 0);
    expect_settings("a", 80, " ann:b@c ", "%41\t\xff:");
}

TEST_F(ProxyOption, LeavesTheCredentialsEmptyThatAreNotGiven)
{
    EXPECT_EQ(fill({"a:80", "ann", nullptr}), 0);
    expect_settings("a", 80, "ann", "");
    EXPECT_EQ(fill({"a:80", nullptr, "secret"}), 0);
    expect_settings("a", 80, "", "secret");
    EXPECT_EQ(fill({"a:80", nullptr, nullptr}), 0);
    expect_settings("a", 80, "", "");
}

TEST_F(ProxyOption, TakesEmptyCredentialsForNone)
{
    EXPECT_EQ(fill({"a:80", "", ""}), 0);
    expect_settings("a", 80, "", "");
    EXPECT_EQ(fill({"a:80", "", "secret"}), 0);
    expect_settings("a", 80, "", "secret");
    EXPECT_EQ(fill({"a:80", "ann", ""}), 0);
    expect_settings("a", 80, "ann", "");
}

TEST_F(ProxyOption, CutsCredentialsOfMoreThan255Characters)
{
    for (const std::size_t length : {254U, 255U, 256U, 257U, 1000U}) {
        SCOPED_TRACE(length);
        const std::string user = std::string(length - 1, 'u') + 'e';
        const std::string password = std::string(length - 1, 'p') + 'e';
        EXPECT_EQ(fill({"a:80", user.c_str(), password.c_str()}), 0);
        expect_settings("a", 80, user.substr(0, 255), password.substr(0, 255));
    }
}

TEST_F(ProxyOption, ReplacesWhatAnEarlierCallFilled)
{
    EXPECT_EQ(fill({"a-long-name.test:80", "a-long-user", "a-long-password"}), 0);
    EXPECT_EQ(fill({"b:81", "ann", nullptr}), 0);
    expect_settings("b", 81, "ann", "");
    EXPECT_EQ(fill({}), 0);
    expect_settings("", 0);
}

TEST_F(ProxyOption, ReportsNothingToTheWebClient)
{
    set_web_error("earlier");
    EXPECT_EQ(fill({"no colon"}), -1);
    EXPECT_STREQ(web_last_error(), "earlier");
    EXPECT_EQ(fill({"a:80"}), 0);
    EXPECT_STREQ(web_last_error(), "earlier");
}

TEST_F(ProxyOfTheSystem, IsTakenWithoutTheOption)
{
    system_settings.host = "system.test";
    system_settings.port = 8080;
    EXPECT_EQ(fill({}), 0);
    expect_settings("system.test", 8080);
    EXPECT_EQ(system_settings.asked_with, std::vector<std::size_t>{256});
}

TEST_F(ProxyOfTheSystem, MayFillAll255Characters)
{
    system_settings.host = std::string(255, 's');
    system_settings.port = 1;
    EXPECT_EQ(fill({}), 0);
    expect_settings(std::string(255, 's'), 1);
}

TEST_F(ProxyOfTheSystem, MayHaveAnyPort)
{
    for (const std::int32_t port : {0, -1, 99999}) {
        system_settings.host = "system.test";
        system_settings.port = port;
        EXPECT_EQ(fill({}), 0);
        expect_settings("system.test", port);
    }
}

// Deliberate: "-proxy-user" and "-proxy-pass" count only together with "-proxy".
TEST_F(ProxyOfTheSystem, ComesWithoutTheCredentialsOfTheCommandLine)
{
    system_settings.host = "system.test";
    system_settings.port = 8080;
    EXPECT_EQ(fill({nullptr, "ann", "secret"}), 0);
    expect_settings("system.test", 8080, "", "");
}

TEST_F(ProxyOfTheSystem, MayBeNoneWhichMakesTheConnectionDirect)
{
    EXPECT_EQ(fill({nullptr, "ann", "secret"}), 0);
    expect_settings("", 0, "", "");
    EXPECT_EQ(system_settings.asked_with, std::vector<std::size_t>{256});
}
