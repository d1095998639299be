#include "tool/shown_body.h"

#include <algorithm>
#include <cstring>

#include "support/c-utils.h"
#include "support/c-utils/wipe.h"
#include "tool/printable.h"
#include "web/web.h"

namespace corvella {

namespace {

constexpr char stars[] = "****";

bool names_a_secret(const std::string &name)
{
    std::string lower = name;
    string_to_lower(name.c_str(), lower.data());
    for (const char *const word : {"pass", "pwd", "secret", "token"}) {
        if (lower.find(word) != std::string::npos) {
            return true;
        }
    }
    return false;
}

/// Replaces the values of a form's secret fields.
std::string without_secret_fields(const std::string &form)
{
    std::string result;
    for (std::size_t at = 0; at < form.size();) {
        const std::size_t end = std::min(form.find('&', at), form.size());
        const std::string field = form.substr(at, end - at);
        const std::size_t equals = field.find('=');
        const bool secret = equals != std::string::npos && names_a_secret(field.substr(0, equals));
        result += secret ? field.substr(0, equals + 1) + stars : field;
        result += end < form.size() ? "&" : "";
        at = end + 1;
    }
    return result;
}

void replace_all(std::string &text, std::string_view secret)
{
    for (std::size_t at = 0; (at = text.find(secret, at)) != std::string::npos;
         at += sizeof stars - 1) {
        text.replace(at, secret.size(), stars);
    }
}

} // namespace

std::string shown_body(std::string_view body, bool is_form, const char *password)
{
    const std::string_view secret = password != nullptr ? password : "";
    std::string escaped(3 * secret.size() + 1, '\0');
    escaped.resize(std::strlen(form_escape(escaped.data(), secret.data())));
    // A password that begins among the bytes that are shown may end after them.
    const std::size_t taken = std::min(body.size(), most_shown_of_body + escaped.size());
    std::string text(body.substr(0, taken));
    if (is_form) {
        text = without_secret_fields(text);
    }
    if (!secret.empty()) {
        replace_all(text, secret);
        replace_all(text, escaped);
    }
    wipe(escaped.data(), escaped.size());
    if (taken < body.size()) {
        text.resize(text.size() - std::min(text.size(), escaped.size()));
    }
    text.resize(std::min(text.size(), most_shown_of_body));
    return printable_text(text);
}

} // namespace corvella
