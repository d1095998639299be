/// \file
/// get and post against nginx, PHP, lighttpd, busybox and Python's http.server: what each answers
/// to a target that is a whole URL and a Host header without the port, and what counts as complete.
#include "tests/harness/real_servers.h"

#include <gtest/gtest.h>

#include "tests/tool/program_under_test.h"

namespace {

const std::string nul_file("one\0two", 7);

/// Adds the files that the tests get.
template <typename Server> void fill(const Server &server)
{
    server.add_file("page.txt", "Hello\n");
    server.add_file("large.txt", std::string(3'000'000, 'x'));
    server.add_file("empty.txt", "");
    server.add_file("nul.txt", nul_file);
    server.add_file("folder/page.txt", "in a folder\n");
}

std::string proxy_at(std::uint16_t port)
{
    return "127.0.0.1:" + std::to_string(port);
}

ProgramResult get(const std::string &url, const std::vector<std::string> &options = {})
{
    std::vector<std::string> arguments = {"get", url};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run_corvella(arguments);
}

void expect_page(const ProgramResult &result, const std::string &body)
{
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, body);
    EXPECT_EQ(result.err, "");
}

void expect_refusal(const ProgramResult &result, const std::string &reason)
{
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')), "Error: Bad HTTP status " + reason);
}

/// Each kind of complete and incomplete reply. \param options how the server is reached
template <typename Server>
void expect_transfers(const Server &server, const std::vector<std::string> &options = {})
{
    expect_page(get(server.url("/page.txt"), options), "Hello\n");
    expect_page(get(server.url("/large.txt"), options), std::string(3'000'000, 'x'));
    expect_page(get(server.url("/empty.txt"), options), "");
    const ProgramResult broken = get(server.url("/nul.txt"), options);
    EXPECT_EQ(broken.exit_status, 1);
    EXPECT_EQ(broken.out, "");
    EXPECT_TRUE(contains(broken.err, "Incomplete reply from web site: 3 of 7 bytes (4 lost"))
        << broken.err;
    expect_refusal(get(server.url("/none.txt"), options), "404 from web site: Not Found");
}

TEST(NginxTransfers, AreCheckedWhole)
{
    const NginxServer nginx;
    fill(nginx);
    expect_transfers(nginx);
    const ProgramResult redirect = get(nginx.url("/folder"));
    expect_refusal(redirect,
                   "301 from web site: Moved Permanently. It refers to " + nginx.url("/folder/"));
}

TEST(NginxTransfers, HaveNoBodyWithStatus204)
{
    const NginxServer nginx("location /none { return 204; }\n");
    expect_page(get(nginx.url("/none")), "");
}

TEST(PhpTransfers, CarryPostedDataWhole)
{
    const PhpServer php(R"(<?php echo $_SERVER['CONTENT_TYPE'], ' ',
        strlen(file_get_contents('php://input')), ' ', md5(file_get_contents('php://input'));)");
    const ProgramResult result = run_program(
        {"/bin/sh", "-c", "printf 'one\\0two' | \"$0\" post \"$1\" -data - -type text/x-test",
         corvella_path(), php.url("/")});
    // The sum is what md5sum prints for these seven bytes.
    EXPECT_EQ(result.out.substr(0, 14), "text/x-test 7 ") << result.err;
    const ProgramResult sum = run_program({"/bin/sh", "-c", "printf 'one\\0two' | md5sum"});
    EXPECT_EQ(result.out.substr(14), sum.out.substr(0, 32));
}

TEST(PhpTransfers, MayBeShorterThanAnnounced)
{
    const PhpServer php("<?php header('Content-Length: 10'); echo 'abc';");
    const ProgramResult result = get(php.url("/"), {"-keep-partial"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "abc");
    EXPECT_TRUE(contains(result.err, "Incomplete reply from web site: 3 of 10 bytes"))
        << result.err;
}

// On purpose: the target is the whole URL, and the Host header has no port.
TEST(LighttpdTransfers, AreRefusedWithAPort)
{
    const LighttpdServer lighttpd;
    fill(lighttpd);
    expect_refusal(get(lighttpd.url("/page.txt")), "400 from web site: Bad Request");
    // Without a port in the URL the two agree.
    expect_page(get("http://web1.test/page.txt", {"-proxy", proxy_at(lighttpd.port())}), "Hello\n");
}

TEST(BusyboxTransfers, AreRefused)
{
    const BusyboxServer busybox;
    fill(busybox);
    expect_refusal(get(busybox.url("/page.txt")), "400 from web site: Bad Request");
}

TEST(PythonTransfers, AreNotFound)
{
    const PythonServer python;
    fill(python);
    expect_refusal(get(python.url("/page.txt")), "404 from web site: File not found");
}

template <typename Proxy> class ThroughAProxy : public testing::Test {
};
using Proxies = testing::Types<TinyProxy, SquidProxy>;
TYPED_TEST_SUITE(ThroughAProxy, Proxies, ProxyNames);

template <typename Server> void expect_page_through(std::uint16_t proxy)
{
    const Server server;
    fill(server);
    const std::vector<std::string> options = {"-proxy", proxy_at(proxy)};
    expect_page(get(server.url("/page.txt"), options), "Hello\n");
    expect_page(get(server.url("/large.txt"), options), std::string(3'000'000, 'x'));
    EXPECT_EQ(get(server.url("/nul.txt"), options).exit_status, 1);
}

TYPED_TEST(ThroughAProxy, EveryServerAnswers)
{
    const TypeParam proxy;
    expect_page_through<NginxServer>(proxy.port());
    expect_page_through<LighttpdServer>(proxy.port());
    expect_page_through<BusyboxServer>(proxy.port());
    expect_page_through<PythonServer>(proxy.port());
}

} // namespace
