/// \file
/// The indented print path: ordinary output to the user.
#pragma once

#include <cstdio>

#pragma GCC visibility push(default)

/// Prints printf-style text to the print stream and flushes it.
///
/// The text starts with as many '.' characters as the print indent says; the same number follows
/// each newline that has something behind it. The expanded text is cut at 65,535 characters less
/// the indent, the output with its dots at 65,536 bytes. Nothing is allocated: the call needs 128
/// KiB of stack.
///
/// \return the result of the flush: 0, or EOF if it fails. A write that fails before the flush, as
/// every write to an unbuffered stream is, does not change the result: where the print stream is
/// standard error, 0 does not mean that the text has arrived.
[[gnu::format(printf, 1, 2)]] int print_indented(const char *format, ...);

/// Selects where print_indented() writes; null selects standard error. The stream stays the
/// caller's and must outlive its use here.
void set_print_stream(std::FILE *stream);

/// \return the stream in force, or null before the first set_print_stream() and the first print.
std::FILE *get_print_stream();

/// Sets the number of '.' characters before each printed line. A negative \p n counts as 0; from
/// 65,536 on there are only dots.
void set_print_indent(int n);

#pragma GCC visibility pop
