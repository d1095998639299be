#include "web/form.h"

#include <cstdint>
#include <cstring>

#include "support/c-utils/percent.h"

namespace {

constexpr corvella::percent_table form_codes = corvella::make_percent_table("", "0123456789abcdef");

// A name or value within a form's body.
constexpr std::int64_t body_text_stop = 1023;
constexpr std::int64_t body_text_refusal = 1020;

// 1021 spaces at three bytes each, then a letter or two, or the stray byte of a refused escape,
// then the NUL.
constexpr std::size_t body_text_size = 3 * 1021 + 3;

/// Escapes within two limits of the count. A code is written only where it belongs: what stands
/// behind it may be the stray byte of a refusal.
char *escape(char *destination, const char *source, std::int64_t stop, std::int64_t refusal)
{
    char *out = destination;
    std::int64_t count = 0;
    for (; *source != '\0' && count < stop; ++source) {
        const corvella::percent_code &code = form_codes[static_cast<unsigned char>(*source)];
        if (code.length > 1 && count > refusal) {
            ++out; // deliberate: the byte that stands there stays, as the last one of the text
            break;
        }
        std::memcpy(out, code.text, code.length);
        out += code.length;
        // Deliberate: a space counts 1, though it writes three bytes.
        count += *source == ' ' ? 1 : code.length;
    }
    *out = '\0';
    return destination;
}

} // namespace

char *form_escape(char *destination, const char *source)
{
    corvella::copy_percent_coded(destination, source, form_codes);
    return destination;
}

char *form_escape_bounded(char *destination, const char *source, int limit)
{
    const std::int64_t stop = limit;
    return escape(destination, source, stop, stop - 3);
}

void build_form_body(int field_count, const FormField *fields, std::string &header_text_out,
                     std::string &body_out)
{
    // Deliberately not cleared from one text to the next: see the stray byte.
    char text[body_text_size] = {};
    body_out.clear();
    for (int i = 0; i < field_count; ++i) {
        if (i > 0) {
            body_out += '&';
        }
        body_out += escape(text, fields[i].name, body_text_stop, body_text_refusal);
        body_out += '=';
        body_out += escape(text, fields[i].value, body_text_stop, body_text_refusal);
    }
    header_text_out = "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: ";
    header_text_out += std::to_string(body_out.size());
}
