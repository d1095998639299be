#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "tests/frameworks/stand_ins.h"
#include "tests/platform/guarded_buffer.h"
#include "web/web.h"

namespace {

using Settings = std::map<std::string, SettingValue>;
using Texts = std::vector<std::string>;

Settings proxy_settings()
{
    return {{"HTTPEnable", integer_value(1)},
            {"HTTPProxy", text_value("proxy.example")},
            {"HTTPPort", integer_value(8080)}};
}

/// proxy_settings() with another value for one key.
Settings settings_with(const std::string &key, const SettingValue &value)
{
    Settings settings = proxy_settings();
    settings.insert_or_assign(key, value);
    return settings;
}

class SystemProxy : public FrameworksTest {
protected:
    GuardedBuffer host{256};
    std::int32_t port = -77;

    bool query()
    {
        return system_http_proxy(host.data(), static_cast<std::size_t>(host.size()), &port);
    }

    /// Whether there is no proxy, and both outputs say so.
    testing::AssertionResult is_none()
    {
        host = GuardedBuffer(256);
        port = -77;
        if (query()) {
            return testing::AssertionFailure() << "a proxy: " << host.text();
        }
        if (!host.text().empty() || port != 0) {
            return testing::AssertionFailure() << "outputs: " << host.text() << ", " << port;
        }
        return testing::AssertionSuccess();
    }
};

TEST_F(SystemProxy, IsTheHttpProxyOfTheSystemsSettings)
{
    stand_ins.proxies = proxy_settings();
    EXPECT_TRUE(query());
    EXPECT_EQ(host.text(), "proxy.example");
    EXPECT_EQ(port, 8080);
}

TEST_F(SystemProxy, IsAskedOfNoParticularStore)
{
    stand_ins.proxies = proxy_settings();
    query();
    const std::vector<Texts> expected = {{"null"}};
    EXPECT_EQ(stand_ins.calls_of("SCDynamicStoreCopyProxies"), expected);
}

TEST_F(SystemProxy, IsReadAsPlainIntsAndAsciiTextOfTheGivenSize)
{
    stand_ins.proxies = proxy_settings();
    query();
    const std::vector<Texts> numbers = {{"9"}, {"9"}};
    EXPECT_EQ(stand_ins.calls_of("CFNumberGetValue"), numbers);
    const std::vector<Texts> texts = {{"proxy.example", "256", "0x00000600"}};
    EXPECT_EQ(stand_ins.calls_of("CFStringGetCString"), texts);
}

TEST_F(SystemProxy, IsNoneWithoutADictionary)
{
    EXPECT_TRUE(is_none());
}

TEST_F(SystemProxy, IsNoneWhenAnyEntryIsMissing)
{
    stand_ins.proxies = Settings{};
    EXPECT_TRUE(is_none());
    for (const char *const key : {"HTTPEnable", "HTTPProxy", "HTTPPort"}) {
        SCOPED_TRACE(key);
        stand_ins.proxies = proxy_settings();
        stand_ins.proxies->erase(key);
        EXPECT_TRUE(is_none());
    }
}

TEST_F(SystemProxy, IsNoneWhenAnyEntryIsOfAnotherType)
{
    for (const char *const key : {"HTTPEnable", "HTTPPort"}) {
        SCOPED_TRACE(key);
        stand_ins.proxies = settings_with(key, text_value("1"));
        EXPECT_TRUE(is_none());
        stand_ins.proxies = settings_with(key, truth_value(true));
        EXPECT_TRUE(is_none());
    }
    stand_ins.proxies = settings_with("HTTPProxy", integer_value(127));
    EXPECT_TRUE(is_none());
    stand_ins.proxies = settings_with("HTTPProxy", truth_value(true));
    EXPECT_TRUE(is_none());
}

TEST_F(SystemProxy, IsNoneWhenNotEnabled)
{
    stand_ins.proxies = settings_with("HTTPEnable", integer_value(0));
    EXPECT_TRUE(is_none());
    stand_ins.proxies = settings_with("HTTPEnable", real_value(0));
    EXPECT_TRUE(is_none());
}

TEST_F(SystemProxy, IsEnabledByEveryOtherNumber)
{
    for (const std::int64_t value : {2, -1, 256, 65536}) {
        SCOPED_TRACE(value);
        stand_ins.proxies = settings_with("HTTPEnable", integer_value(value));
        EXPECT_TRUE(query());
    }
}

// A number that does not fit an int is refused, though its nearest int may have been stored.
TEST_F(SystemProxy, IsNoneWhenANumberCannotBeReadAsAnInt)
{
    for (const char *const key : {"HTTPEnable", "HTTPPort"}) {
        SCOPED_TRACE(key);
        for (const SettingValue &value :
             {integer_value(std::int64_t{1} << 32), integer_value(-(std::int64_t{1} << 40)),
              real_value(80.5), real_value(1e30)}) {
            stand_ins.proxies = settings_with(key, value);
            EXPECT_TRUE(is_none());
        }
    }
}

TEST_F(SystemProxy, TakesAPortThatIsAWholeRealNumber)
{
    stand_ins.proxies = settings_with("HTTPPort", real_value(3128));
    EXPECT_TRUE(query());
    EXPECT_EQ(port, 3128);
}

// Deliberate: a port of 0, or one that no server can have, is a readable number like any other.
TEST_F(SystemProxy, TakesEveryReadablePort)
{
    for (const std::int32_t value :
         {0, -1, 1, 65535, 65536, std::numeric_limits<std::int32_t>::max(),
          std::numeric_limits<std::int32_t>::min()}) {
        SCOPED_TRACE(value);
        stand_ins.proxies = settings_with("HTTPPort", integer_value(value));
        EXPECT_TRUE(query());
        EXPECT_EQ(host.text(), "proxy.example");
        EXPECT_EQ(port, value);
    }
}

TEST_F(SystemProxy, TakesAHostNameThatJustFits)
{
    const std::string name(255, 'h');
    stand_ins.proxies = settings_with("HTTPProxy", text_value(name));
    EXPECT_TRUE(query());
    EXPECT_EQ(host.text(), name);
    EXPECT_TRUE(host.is_guard_intact());
}

TEST_F(SystemProxy, IsNoneWhenTheHostNameIsTooLong)
{
    for (const std::size_t length : {256u, 257u, 5000u}) {
        SCOPED_TRACE(length);
        stand_ins.proxies = settings_with("HTTPProxy", text_value(std::string(length, 'h')));
        EXPECT_TRUE(is_none());
        EXPECT_TRUE(host.is_guard_intact());
    }
}

TEST_F(SystemProxy, KeepsToTheGivenSize)
{
    stand_ins.proxies = proxy_settings();
    GuardedBuffer exact(sizeof "proxy.example");
    EXPECT_TRUE(system_http_proxy(exact.data(), sizeof "proxy.example", &port));
    EXPECT_EQ(exact.text(), "proxy.example");
    EXPECT_TRUE(exact.is_guard_intact());

    for (const std::size_t size : {sizeof "proxy.example" - 1, std::size_t{1}}) {
        SCOPED_TRACE(size);
        GuardedBuffer tight(size);
        EXPECT_FALSE(system_http_proxy(tight.data(), size, &port));
        EXPECT_EQ(tight.text(), "");
        EXPECT_EQ(port, 0);
        EXPECT_TRUE(tight.is_guard_intact());
    }
}

TEST_F(SystemProxy, WritesNothingIntoABufferOfNoBytes)
{
    stand_ins.proxies = proxy_settings();
    GuardedBuffer none(0);
    EXPECT_FALSE(system_http_proxy(none.data(), 0, &port));
    EXPECT_TRUE(none.is_untouched());
    EXPECT_EQ(port, 0);
}

TEST_F(SystemProxy, IsNoneWhenTheHostNameIsNotAscii)
{
    for (const char *const name : {"\xc3\xa9.example", "pr\xc3\xb8xy.example", "a\xe2\x82\xac"}) {
        SCOPED_TRACE(name);
        stand_ins.proxies = settings_with("HTTPProxy", text_value(name));
        EXPECT_TRUE(is_none());
    }
}

TEST_F(SystemProxy, IsNoneWhenAnyCallFails)
{
    for (const char *const call :
         {"SCDynamicStoreCopyProxies", "CFNumberGetValue", "CFStringGetCString"}) {
        SCOPED_TRACE(call);
        stand_ins.proxies = proxy_settings();
        stand_ins.failing = {call};
        EXPECT_TRUE(is_none());
    }
}

TEST_F(SystemProxy, IgnoresEveryOtherEntry)
{
    stand_ins.proxies = Settings{{"HTTPSEnable", integer_value(1)},
                                 {"HTTPSProxy", text_value("s.example")},
                                 {"HTTPSPort", integer_value(1)},
                                 {"SOCKSEnable", integer_value(1)},
                                 {"SOCKSProxy", text_value("k.example")},
                                 {"SOCKSPort", integer_value(2)},
                                 {"ProxyAutoConfigEnable", integer_value(1)}};
    EXPECT_TRUE(is_none());
    const Settings http = proxy_settings();
    stand_ins.proxies->insert(http.begin(), http.end());
    stand_ins.calls.clear();
    EXPECT_TRUE(query());
    const std::vector<Texts> looked_up = {{"HTTPEnable"}, {"HTTPProxy"}, {"HTTPPort"}};
    EXPECT_EQ(stand_ins.calls_of("CFDictionaryGetValue"), looked_up);
}

} // namespace
