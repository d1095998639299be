/// \file
/// Form fields as an application/x-www-form-urlencoded body.
///
/// The rule is the system's own, stricter than application/x-www-form-urlencoded (HTML 4.01 section
/// 17.13.4), which servers read alike. In every member of this family ASCII letters and digits stay
/// as they are, and any other byte becomes "%" and its two lower-case hexadecimal digits; a space
/// becomes "%20", never "+".
///
/// A running count limits the output: a plain character counts 1, an escape 3, and a space 1,
/// deliberately, although it writes three characters. At the stop threshold the text ends. Above
/// the refusal threshold no further escape is begun: the text then ends one position behind the
/// last character written, and deliberately keeps the one byte that stood there.
#pragma once

#include <string>

#pragma GCC visibility push(default)

/// One field of a form; the texts belong to the caller.
struct FormField {
    const char *name;  ///< not escaped; not null
    const char *value; ///< not escaped; not null
};

/// Builds the body "name=value&name=value..." and the header lines that announce its type and
/// length, without a line end behind them. Both texts are replaced. Each name and each value ends
/// when its count reaches 1023, or where an escape would begin at a count above 1020. The stray
/// byte of a refused escape is what an earlier name or value of the same call left there; where
/// nothing did, the text ends before it. A \p field_count below 1 gives an empty body, and then
/// \p fields may be null.
/// \throws std::bad_alloc when memory is exhausted.
void build_form_body(int field_count, const FormField *fields, std::string &header_text_out,
                     std::string &body_out);

/// Escapes the whole of \p source into \p destination, which needs up to three times its length
/// and a NUL. \return \p destination.
char *form_escape(char *destination, const char *source);

/// Escapes \p source until the count reaches \p limit, or until an escape would begin at a count
/// above \p limit - 3. A \p limit below 1 gives "". The destination needs up to 3 * \p limit + 2
/// bytes, because spaces count 1; 1 byte for a limit below 1. \return \p destination.
char *form_escape_bounded(char *destination, const char *source, int limit);

#pragma GCC visibility pop
