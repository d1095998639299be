/// \file
/// What a post sends: the file of -data, or form fields that are checked to fit.
#pragma once

#include <string>
#include <vector>

#include "tool/exit_status.h"
#include "web/web.h"

namespace corvella {

/// Reads the whole of a file, or of standard input if \p path is "-"; any byte may occur.
/// \return false if it cannot be read; that is reported then.
/// \throws std::bad_alloc if it does not fit into the memory.
bool read_request_body(const char *path, std::string &body);

/// \return why a field cannot be sent whole: a form cuts a long name or value, see
/// build_form_body(); "" if it can.
std::string field_error(const FormField &field);

} // namespace corvella
