/// \file
/// The print path for a finished text. Internal to the facility.
#pragma once

/// Prints \p text as print_indented("%s", text) does. \return the result of the flush.
int print_text(const char *text);
