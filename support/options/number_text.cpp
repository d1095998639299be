#include "support/options/number_text.h"

#include "support/c-utils/characters.h"

namespace corvella {

namespace {

/// Lower-cases an ASCII letter, in every locale.
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool is_hexadecimal_digit(char c)
{
    return is_digit(c) || (lower(c) >= 'a' && lower(c) <= 'f');
}

const char *skip_sign(const char *text)
{
    return *text == '-' || *text == '+' ? text + 1 : text;
}

/// \return the place behind \p word, which is in lower case, or null when it is not there.
const char *skip_word(const char *text, const char *word)
{
    for (; *word != '\0'; ++word, ++text) {
        if (lower(*text) != *word) {
            return nullptr;
        }
    }
    return text;
}

/// \return the place behind digits with at most one point, or null when there is no digit.
const char *skip_digits(const char *text, bool (*counts)(char))
{
    bool any = false;
    bool point = false;
    for (; counts(*text) || (*text == '.' && !point); ++text) {
        if (*text == '.') {
            point = true;
        } else {
            any = true;
        }
    }
    return any ? text : nullptr;
}

/// \return the place behind an exponent begun by \p letter; \p text itself when there is none; null
/// when it is begun but has no digit.
const char *skip_exponent(const char *text, char letter)
{
    if (lower(*text) != letter) {
        return text;
    }
    text = skip_sign(text + 1);
    if (!is_digit(*text)) {
        return nullptr;
    }
    while (is_digit(*text)) {
        ++text;
    }
    return text;
}

const char *skip_finite_number(const char *text)
{
    const char *const hexadecimal = skip_word(text, "0x");
    const char *const end = hexadecimal != nullptr ? skip_digits(hexadecimal, is_hexadecimal_digit)
                                                   : skip_digits(text, is_digit);
    return end != nullptr ? skip_exponent(end, hexadecimal != nullptr ? 'p' : 'e') : nullptr;
}

/// "nan", and what may stand behind it in parentheses.
const char *skip_nan(const char *text)
{
    const char *const end = skip_word(text, "nan");
    if (end == nullptr || *end != '(') {
        return end;
    }
    const char *c = end + 1;
    while (is_alphanumeric(*c) || *c == '_') {
        ++c;
    }
    return *c == ')' ? c + 1 : nullptr;
}

const char *skip_unsigned_number(const char *text)
{
    switch (lower(*text)) {
    case 'i': {
        const char *const whole = skip_word(text, "infinity");
        return whole != nullptr ? whole : skip_word(text, "inf");
    }
    case 'n':
        return skip_nan(text);
    default:
        return skip_finite_number(text);
    }
}

} // namespace

bool reads_as_number(const char *text)
{
    const char *const end = skip_unsigned_number(skip_sign(skip_white_space(text)));
    return end != nullptr && *skip_white_space(end) == '\0';
}

} // namespace corvella
