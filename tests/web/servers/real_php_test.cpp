#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/harness/real_servers.h"
#include "tests/web/servers/form_call.h"

namespace {

/// Shows what PHP decodes the names and values to, byte by byte.
constexpr char decoding_page[] = R"(<?php
header('Content-Type: text/plain');
foreach (explode('&', file_get_contents('php://input')) as $pair) {
    [$name, $value] = explode('=', $pair);
    echo bin2hex(urldecode($name)), '=', bin2hex(urldecode($value)), "\n";
}
)";

/// Shows the credentials that PHP finds.
constexpr char credentials_page[] = R"(<?php
header('Content-Type: text/plain');
echo bin2hex($_SERVER['PHP_AUTH_USER'] ?? 'none'), ':', bin2hex($_SERVER['PHP_AUTH_PW'] ?? 'none');
)";

std::string hexadecimal(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 3> digits = {};
        std::snprintf(digits.data(), digits.size(), "%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits.data();
    }
    return text;
}

std::string every_byte_but_nul()
{
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

/// What the page of the stand-in service shows of a form.
std::string as_shown(const FormFields &fields)
{
    std::string text = "POST /form\n";
    for (const auto &[name, value] : fields) {
        text += name;
        text += '=';
        text += value;
        text += '\n';
    }
    return text;
}

/// The value that PHP gets for \p value.
std::string value_received(const PhpServer &php, const std::string &value)
{
    const WebOutcome outcome = post_form(php.url("/form"), {{"field", value}});
    const std::string shown = outcome.body.value_or("(nothing)");
    const std::string before = "POST /form\nfield=";
    EXPECT_EQ(shown.substr(0, before.size()), before) << outcome.error;
    return shown.size() > before.size()
               ? shown.substr(before.size(), shown.size() - before.size() - 1)
               : "";
}

TEST(PhpPage, ReadsTheFieldsThatWerePosted)
{
    const PhpServer php;
    const FormFields cases[] = {
        {{"product", "A B"}, {"v", "1.0"}},
        {{"empty", ""}, {"last", "x"}},
        {{"text", "1 + 1 = 2 & 50 % of \"it\"; a/b?c#d"}},
        {{"lines", "first\nsecond\r\nthird"}},
        {{"UTF-8", "Zürich, naïve, 日本語, 🙂"}, {"größe", "µ"}},
        {{"not-UTF-8", "\xff\xfe\x80"}},
        {{"every", every_byte_but_nul()}},
        {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}, {"e", "5"}, {"f", "6"}, {"g", "7"}},
    };
    for (const FormFields &fields : cases) {
        const WebOutcome outcome = post_form(php.url("/form"), fields);
        EXPECT_EQ(outcome.result, 0) << outcome.error;
        EXPECT_EQ(status_complaint(outcome), "");
        EXPECT_EQ(outcome.body, as_shown(fields));
    }
}

TEST(PhpPage, GetsNoFieldsFromAGet)
{
    const PhpServer php;
    const WebOutcome outcome = get_page(php.url("/form"));
    EXPECT_EQ(outcome.body, "GET /form\n");
}

// PHP itself puts an underscore in the place of some characters of a name.
TEST(PhpPage, RenamesPointsAndBlanksInNames)
{
    const PhpServer php;
    const WebOutcome outcome = post_form(php.url("/form"), {{"a.b", "1"}, {"c d", "2"}});
    EXPECT_EQ(outcome.body, "POST /form\na_b=1\nc_d=2\n");
}

TEST(PhpPage, DecodesAnyNameByItself)
{
    const PhpServer php(decoding_page);
    const FormFields fields = {{"a.b", "1"},   {"a[b]", "2"},  {"a b", "3"},
                               {"a=b&c", "4"}, {"größe", "5"}, {every_byte_but_nul(), "6"}};
    std::string expected;
    for (const auto &[name, value] : fields) {
        expected += hexadecimal(name) + "=" + hexadecimal(value) + "\n";
    }
    EXPECT_EQ(post_form(php.url("/"), fields).body, expected);
}

TEST(PhpPage, ReceivesLongValuesUpToTheLimitOfTheForm)
{
    const PhpServer php;
    EXPECT_EQ(value_received(php, std::string(1023, 'a')), std::string(1023, 'a'));
    EXPECT_EQ(value_received(php, std::string(340, '%')), std::string(340, '%'));
    EXPECT_EQ(value_received(php, std::string(1021, ' ')), std::string(1021, ' '));
}

// A letter counts 1 and any other byte 3 towards the limit of 1023. A blank counts 1 too, but is
// refused from a count of 1021 on, as a byte is that has to be escaped.
TEST(PhpPage, ReceivesWhatTheLimitOfTheFormLeaves)
{
    const PhpServer php;
    EXPECT_EQ(value_received(php, std::string(2000, 'a')), std::string(1023, 'a'));
    EXPECT_EQ(value_received(php, std::string(2000, '%')), std::string(341, '%'));
    EXPECT_EQ(value_received(php, std::string(2000, ' ')), std::string(1021, ' '));
}

TEST(PhpPage, ReceivesManyLongFields)
{
    const PhpServer php;
    FormFields fields;
    for (int number = 100; number < 300; ++number) {
        fields.emplace_back("f" + std::to_string(number), std::string(1000, 'x'));
    }
    EXPECT_EQ(post_form(php.url("/form"), fields).body, as_shown(fields));
}

TEST(PhpPage, ReadsTheCredentials)
{
    struct {
        const char *user;
        const char *password;
    } const cases[] = {
        {"Aladdin", "open sesame"},
        {"u", "p"},
        {"us", "p:q:"},
        {"Jürgen", "\xff\xfe\x01"},
    };
    const PhpServer php(credentials_page);
    for (const auto &[user, password] : cases) {
        WebCall call;
        call.user = user;
        call.password = password;
        EXPECT_EQ(get_page(php.url("/"), call).body,
                  hexadecimal(user) + ":" + hexadecimal(password));
    }
}

TEST(PhpPage, FindsNoCredentialsWhereOneOfTheTwoIsMissing)
{
    const PhpServer php(credentials_page);
    WebCall call;
    call.user = "Aladdin";
    EXPECT_EQ(get_page(php.url("/"), call).body, hexadecimal("none") + ":" + hexadecimal("none"));
}

} // namespace
