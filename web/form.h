/// \file
/// Form fields as an application/x-www-form-urlencoded body.
///
/// The escaping is stricter than application/x-www-form-urlencoded (HTML 4.01 section 17.13.4);
/// servers decode both the same. All functions keep ASCII letters and digits, and write any other
/// byte as "%" and its two lower-case hexadecimal digits. A space becomes "%20", never "+".
///
/// A running count limits the output: a plain character counts 1, an escape 3. On purpose: a space
/// counts 1, although it writes three characters. The output ends when the count reaches the stop
/// threshold, or where an escape would begin at a count above the refusal threshold. On purpose: in
/// the second case the output ends one position later and keeps the byte that the destination held
/// there, the stray byte.
#pragma once

#include <string>

#pragma GCC visibility push(default)

/// One field of a form; the strings belong to the caller.
struct FormField {
    const char *name;  ///< not escaped; not null
    const char *value; ///< not escaped; not null
};

/// Builds the body "name=value&name=value..." and the header lines with its type and length.
///
/// Each name and each value ends when its count reaches 1023, or where an escape would begin at a
/// count above 1020. The stray byte is then one of an earlier name or value of the same call; if
/// none reached that position, there is no stray byte.
///
/// \param field_count the number of fields; a number below 1 gives an empty body
/// \param fields the fields; may be null if \p field_count is below 1
/// \param header_text_out receives the header lines, without a line end after the last one
/// \param body_out receives the body
/// \throws std::bad_alloc if memory is exhausted.
void build_form_body(int field_count, const FormField *fields, std::string &header_text_out,
                     std::string &body_out);

/// Escapes a whole string.
/// \param destination receives the result; needs up to three times the length of \p source and a
///     NUL
/// \param source the string
/// \return \p destination.
char *form_escape(char *destination, const char *source);

/// Escapes a string until its count reaches a limit.
/// \param destination receives the result; needs up to 3 * \p limit + 2 bytes, because spaces
///     count 1, or 1 byte for a limit below 1
/// \param source the string
/// \param limit the stop threshold; the refusal threshold is \p limit - 3. A limit below 1 gives
///     "".
/// \return \p destination.
char *form_escape_bounded(char *destination, const char *source, int limit);

#pragma GCC visibility pop
