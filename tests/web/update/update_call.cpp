#include "tests/web/update/update_call.h"

#include <cstddef>
#include <gtest/gtest.h>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/web/web_call.h"
#include "web/web.h"

namespace {

/// What a destination holds after the query.
std::optional<std::string> written(const ExactBuffer &destination)
{
    EXPECT_TRUE(destination.intact());
    const std::string bytes = destination.bytes();
    if (bytes == std::string(bytes.size(), ExactBuffer::filling)) {
        return std::nullopt;
    }
    const std::string text = destination.text();
    std::string expected = text;
    expected.resize(bytes.size(), '\0');
    EXPECT_EQ(bytes, expected);
    return text;
}

} // namespace

UpdateOutcome ask(const UpdateQuery &query)
{
    const std::size_t size = query.capacity < 1 ? 8 : static_cast<std::size_t>(query.capacity);
    const ExactBuffer message(size);
    const ExactBuffer version(size);
    const ExactBuffer url(size);
    const ExactBuffer button(size);
    const int result = query_product_update(
        query.product, query.productline, query.version, query.version_name, query.os,
        query.os_version, query.machine_id, query.processor_arch, query.capacity, message.data(),
        query.wants_version ? version.data() : nullptr, query.wants_url ? url.data() : nullptr,
        query.wants_button ? button.data() : nullptr, query.proxy_host, query.proxy_port,
        query.user, query.password);
    return {result,       written(message), written(version),
            written(url), written(button),  web_last_error()};
}

std::string update_url()
{
    return "http://www." CORVELLA_MAKER_DOMAIN "/version-update.php";
}

std::string update_host()
{
    std::string host = "www." CORVELLA_MAKER_DOMAIN;
    for (char &c : host) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return host;
}

std::string update_request(const std::string &body, const std::string &authorization)
{
    return request_text("POST " + update_url() + " HTTP/1.0", update_host(),
                        "Content-Type: application/x-www-form-urlencoded\r\n"
                        "Content-Length: " +
                            std::to_string(body.size()) + "\r\n",
                        authorization, body);
}

std::string update_form(const std::string &version)
{
    return "product=p&productline=l&version=" + version +
           "&version%5fname=n&os=o&os%5fversion=v&machine%5fid=m&processor%5farch=a";
}
