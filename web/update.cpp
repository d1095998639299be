#include "web/update.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "support/c-utils.h"
#include "web/reply_status.h"
#include "web/request.h"
#include "web/result.h"

namespace {

constexpr char update_url[] = "http://www." CORVELLA_MAKER_DOMAIN "/version-update.php";

/// Where the value of a reply field goes.
struct reply_field {
    const char *name;
    char *destination; ///< may be null
};

/// The destinations of a query, all of one size.
struct update_reply {
    reply_field fields[3];
    char *message;
    std::size_t capacity;
};

void store_field(const update_reply &reply, const char *name, const char *value)
{
    for (const reply_field &field : reply.fields) {
        if (field.destination != nullptr && std::strcmp(field.name, name) == 0) {
            copy_string_bounded(field.destination, value, reply.capacity);
        }
    }
}

/// Cuts the text at \p at. \return what is behind it.
char *cut(char *at)
{
    *at = '\0';
    return at + 1;
}

/// Reads the lines of a body, which it cuts into names and values, up to the message.
/// \return whether there is one.
bool read_update_reply(char *body, const update_reply &reply)
{
    while (char *const colon = std::strchr(body, ':')) {
        const char *const name = body;
        char *value = cut(colon);
        if (*value != '\0') {
            ++value; // the blank; deliberately not looked at
        }
        if (std::strcmp(name, "Message") == 0) {
            copy_string_bounded(reply.message, value, reply.capacity);
            return true;
        }
        char *const line_end = std::strchr(value, '\n');
        if (line_end == nullptr) {
            return false;
        }
        body = cut(line_end);
        store_field(reply, name, value);
    }
    return false;
}

void free_text(char **text)
{
    std::free(*text);
}

} // namespace

int query_product_update(const char *product, const char *productline, float version,
                         const char *version_name, const char *os, const char *os_version,
                         const char *machine_id, const char *processor_arch, int capacity,
                         char *message_out, char *version_out, char *url_out, char *button_out,
                         const char *proxy_host, std::uint16_t proxy_port, const char *user,
                         const char *password)
{
    char version_text[64]; // the greatest float has 39 digits before its point
    format_string_bounded(version_text, sizeof version_text, "%.3f", static_cast<double>(version));
    const FormField fields[] = {
        {"product", product},
        {"productline", productline},
        {"version", version_text},
        {"version_name", version_name},
        {"os", os},
        {"os_version", os_version},
        {"machine_id", machine_id},
        {"processor_arch", processor_arch},
    };
    char *header = nullptr;
    char *body = nullptr;
    // Given back on every way out, an exception included.
    const std::unique_ptr<char *, void (*)(char **)> header_owner(&header, free_text);
    const std::unique_ptr<char *, void (*)(char **)> body_owner(&body, free_text);
    const int result = web_request(update_url, "POST", sizeof fields / sizeof fields[0], fields,
                                   &header, &body, proxy_host, proxy_port, user, password);
    if (result != WEB_DONE) {
        return result;
    }
    if (check_reply_status(header) != 0) {
        return WEB_FAILED;
    }
    const update_reply reply = {
        {{"Version", version_out}, {"URL", url_out}, {"Button", button_out}},
        message_out,
        capacity > 0 ? static_cast<std::size_t>(capacity) : 0,
    };
    return read_update_reply(body, reply) ? WEB_DONE : WEB_FAILED;
}
