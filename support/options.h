/// \file
/// The command-line option parser: short options, long options with abbreviations, operands among
/// them. It resembles getopt_long, and differs where it is said.
///
/// \code
/// int code;
/// while ((code = get_long_options(argc, argv, "vo:", table, nullptr)) != -1) {
///     switch (code) { ... }
/// }
/// // argv[option_index] and what follows are the operands.
/// \endcode
///
/// Deliberate differences: an element that reads as a negative number is an operand; an unknown
/// "--name" is read as a cluster of short options, without a diagnostic of its own; "=" may stand
/// before the argument of a short option too; a cluster of several options, and an option that is
/// unknown, ambiguous or without its argument, is not moved in front of the operands before it, so
/// that those operands are lost to a caller that reads on from option_index; a ":" typed as an
/// option is found in the option characters like any other.
///
/// Diagnostics go straight to standard error, in the form "program: ..."; they are printed only
/// while option_errors is not 0. All state is process-wide: one scan at a time.
///
/// The caller's duty: elements, names and option characters are NUL-terminated, the table of long
/// options has its end, and a \p flag points to where a value can be stored.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// A long option. A table of them ends with a record whose name is null.
struct long_option {
    const char *name;          ///< without dashes
    std::int32_t has_argument; ///< 0 none, 1 required, 2 optional and only behind "="; else none
    std::int32_t *flag;        ///< where to store `value`; null to return it instead
    std::int32_t value;        ///< the code of the option
};

/// The next element to look at, 0 at first; behind the last option it is the first operand.
/// Setting it to 0, and to nothing else, starts a new scan at element 1. Outside the vector it is
/// the end of the scan.
extern std::int32_t option_index;

/// The argument of the option just returned, or null; in return-in-order mode the operand just
/// returned. Points into the vector's elements.
extern char *option_argument;

/// The character of the short option just returned, 0 to 255; 1 for an operand returned in order;
/// '?' after an error, ':' after a missing argument. A long option leaves it as it was.
extern std::int32_t option_code;

/// Whether diagnostics are printed; 1 at first.
extern std::int32_t option_errors;

/// The next character within the element, 1 at its start. Belongs to the parser, which starts the
/// element anew when it is not inside.
extern std::int32_t option_position;

/// parse_options() with short options only. \return as there.
int get_options(int count, char **vector, const char *short_options);

/// parse_options() with long options behind "--". \return as there.
int get_long_options(int count, char **vector, const char *short_options,
                     const long_option *long_options, int *index);

/// parse_options() with long options behind "--", "-" or "+"; they are tried before short ones.
/// \return as there.
int get_long_options_only(int count, char **vector, const char *short_options,
                          const long_option *long_options, int *index);

/// Returns the next option.
///
/// \param count the number of elements of \p vector; a negative one is the end of the scan
/// \param vector the program's name and its arguments. The order of its pointers may change:
///     unless the mode says otherwise, options move in front of the operands before them. A null
///     element ends the vector before the count; a null vector is refused.
/// \param short_options the option characters; ":" behind one requires an argument, "::" takes an
///     optional one that is attached. A leading "+" stops the scan at the first operand, as does
///     the environment variable POSIXLY_CORRECT where the text names no mode; a leading "-" returns
///     operands in order, as the argument of an option of code 1. In every mode "--" ends the
///     options and is consumed, also as the first element. May be null.
/// \param long_options the table of long options; may be null, but not together with
///     \p short_options
/// \param index receives the position of a long option in its table; may be null
/// \param long_only whether "-" and "+" introduce long options too
///
/// \return the character of a short option; for a long option its value, or 0 when the value was
/// stored through its flag; 1 for an operand returned in order; '?' for an unknown or ambiguous
/// option and for a call without elements or descriptions; where \p short_options is null, for an
/// unknown name option_code as it was, without a diagnostic; ':' for a missing argument; -1 at the
/// end. A call that could only be repeated with the same result is the last of its scan: the next
/// one returns -1 until option_index is set to 0, so that a loop until -1 ends for every vector.
/// The one exception is a bad call (no elements, no vector or neither description): it returns '?'
/// each time, and a loop until -1 does not end.
int parse_options(int count, char **vector, const char *short_options,
                  const long_option *long_options, int *index, int long_only);

#pragma GCC visibility pop
