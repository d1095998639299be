/// \file
/// The command-line option parser: short options, long options with abbreviations, and operands
/// among them. It resembles getopt_long, except for the differences below.
///
/// \code
/// int code;
/// while ((code = get_long_options(argc, argv, "vo:", table, nullptr)) != -1) {
///     switch (code) { ... }
/// }
/// // The operands start at argv[option_index].
/// \endcode
///
/// On purpose: an element that looks like a negative number is an operand. An unknown "--name" is
/// parsed as a cluster of short options, without its own diagnostic. "=" may precede the argument
/// of a short option too. A ":" typed as an option matches a ":" in the option characters. A
/// cluster of several options is not moved in front of the operands that precede it, nor is an
/// option that is unknown, ambiguous or without its argument; a caller that reads the operands from
/// option_index on misses the preceding ones.
///
/// Diagnostics are printed to standard error, in the form "program: ...", unless option_errors is
/// 0. All state is process-wide: one scan at a time.
///
/// The caller passes NUL-terminated elements, names and option characters, a terminated table of
/// long options, and in each \p flag null or a place where a value can be stored.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// A long option. A table of them ends with a record whose name is null.
struct long_option {
    const char *name;          ///< without dashes
    std::int32_t has_argument; ///< 0 none, 1 required, 2 optional and only after "="; else none
    std::int32_t *flag;        ///< where to store `value`; null to return it instead
    std::int32_t value;        ///< the code of the option
};

/// The index of the next element, 0 at first; after the last option, of the first operand.
/// Setting it to 0, and only to 0, starts a new scan at element 1. An index outside the vector ends
/// the scan.
extern std::int32_t option_index;

/// The argument of the option just returned, or null; in return-in-order mode the operand just
/// returned. Points into an element of the vector.
extern char *option_argument;

/// The character of the short option just returned, 0 to 255; 1 for an operand returned in order;
/// '?' after an error, ':' after a missing argument. A long option does not change it.
extern std::int32_t option_code;

/// Whether diagnostics are printed; 1 at first.
extern std::int32_t option_errors;

/// The index of the next character within the element, 1 at its start. Belongs to the parser, which
/// restarts the element if the index is outside.
extern std::int32_t option_position;

/// Returns the next short option, as parse_options() does.
/// \param count,vector,short_options see parse_options()
/// \return see parse_options()
int get_options(int count, char **vector, const char *short_options);

/// Returns the next short option, or long option after "--", as parse_options() does.
/// \param count,vector,short_options,long_options,index see parse_options()
/// \return see parse_options()
int get_long_options(int count, char **vector, const char *short_options,
                     const long_option *long_options, int *index);

/// Returns the next long option after "--", "-" or "+", or else short option, as parse_options()
/// does.
/// \param count,vector,short_options,long_options,index see parse_options()
/// \return see parse_options()
int get_long_options_only(int count, char **vector, const char *short_options,
                          const long_option *long_options, int *index);

/// Returns the next option of a command line.
///
/// A call that would give the same result for ever is the last of its scan: the next call returns
/// -1 until option_index is set to 0, so that a loop until -1 ends for every vector. The exception
/// is a bad call, with no elements, no vector or neither description: it returns '?' each time, and
/// a loop until -1 does not end.
///
/// \param count the number of elements of \p vector; a negative one ends the scan
/// \param vector the program's name and its arguments. The order of its pointers may change:
///     unless the mode prevents it, options move in front of the operands that precede them. A null
///     element ends the vector early; a null vector is refused.
/// \param short_options the option characters; a ":" after one requires an argument, "::" accepts
///     an optional one that is attached. A leading "+" stops the scan at the first operand. So does
///     the environment variable POSIXLY_CORRECT if there is no leading "+" or "-". A leading "-"
///     returns operands in order, each as the argument of an option of code 1. In every mode "--"
///     ends the options and is consumed, also as the first element. May be null.
/// \param long_options the table of long options; may be null, but not together with
///     \p short_options
/// \param index receives the index of a long option in its table; may be null
/// \param long_only not 0 if "-" and "+" introduce long options too
/// \return the character of a short option; for a long option its value, or 0 if the value was
/// stored through its flag; 1 for an operand returned in order; '?' for an unknown or ambiguous
/// option and for a bad call; ':' for a missing argument; -1 at the end. If \p short_options is
/// null, an unknown name returns the previous option_code, without a diagnostic.
int parse_options(int count, char **vector, const char *short_options,
                  const long_option *long_options, int *index, int long_only);

#pragma GCC visibility pop
