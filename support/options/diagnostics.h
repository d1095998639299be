/// \file
/// The three complaints of the option parser, printed to standard error while option_errors is not
/// 0. Internal to the option parser.
#pragma once

namespace corvella {

/// \p element is the whole element as typed; the names are of the two long options it may mean.
void complain_ambiguous(const char *program, const char *element, const char *first,
                        const char *second);

/// \p character is a short option that the program does not have.
void complain_invalid(const char *program, char character);

/// A short option without its argument.
void complain_missing_argument(const char *program, char character);

/// A long option without its argument.
void complain_missing_argument(const char *program, const char *name);

} // namespace corvella
