/// \file
/// Systems whose network settings cannot be asked: there is never a proxy.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "web/web.h"

TEST(SystemProxyNone, FindsNoProxyAndEmptiesWhatItWasGiven)
{
    for (const std::size_t size : {1U, 2U, 256U}) {
        const ExactBuffer host(size);
        std::int32_t port = 8080;
        EXPECT_FALSE(system_http_proxy(host.data(), size, &port));
        EXPECT_EQ(host.text(), "");
        EXPECT_TRUE(host.intact());
        EXPECT_EQ(port, 0);
    }
}

TEST(SystemProxyNone, WritesNothingIntoABufferOfNoBytes)
{
    const ExactBuffer host(4);
    std::int32_t port = 8080;
    EXPECT_FALSE(system_http_proxy(host.data(), 0, &port));
    EXPECT_EQ(host.bytes(), std::string(4, ExactBuffer::filling));
    EXPECT_TRUE(host.intact());
    EXPECT_EQ(port, 0);
}

TEST(SystemProxyNone, LeavesTheSettingsAllZero)
{
    ProxySettings settings;
    std::memset(&settings, 0x5a, sizeof settings);
    EXPECT_EQ(fill_proxy_settings(&settings, nullptr, "ann", "secret"), 0);
    std::string bytes(sizeof settings, '\x5a');
    std::memcpy(bytes.data(), &settings, sizeof settings);
    EXPECT_EQ(bytes, std::string(772, '\0'));
}
