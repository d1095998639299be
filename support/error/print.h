/// \file
/// Indented printing: ordinary output to the user.
#pragma once

#include <cstdio>

#pragma GCC visibility push(default)

/// Prints printf-style text to the print stream and flushes it.
///
/// The print indent is written as '.' characters: at the start of the text, and after each newline
/// that is not its last character. The expanded text is truncated to 65,535 characters less the
/// indent, and the output with its dots to 65,536 bytes. The call does not allocate; it needs
/// 128 KiB of stack.
///
/// \param format a printf format, followed by its arguments
/// \return the result of the flush: 0, or EOF if the flush fails. A write that fails before the
/// flush does not change the result. An unbuffered stream writes before the flush, so on standard
/// error 0 does not mean that the text was written.
[[gnu::format(printf, 1, 2)]] int print_indented(const char *format, ...);

/// Selects the stream that print_indented() writes to.
/// \param stream null selects standard error; owned by the caller, and must outlive its use here
void set_print_stream(std::FILE *stream);

/// Returns the stream that print_indented() writes to.
/// \return the stream, or null before the first set_print_stream() and the first print.
std::FILE *get_print_stream();

/// Sets the print indent.
/// \param n the number of '.' characters in front of each line; a negative number counts as 0, and
///     from 65,536 on only dots are printed
void set_print_indent(int n);

#pragma GCC visibility pop
