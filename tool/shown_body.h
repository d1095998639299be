/// \file
/// A request's body as -verbose shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvella {

/// Bytes of the body that are shown.
constexpr std::size_t most_shown_of_body = 4096;

/// \return the first most_shown_of_body bytes of a body as printable_text(), with "****" in place
/// of the password, be it plain or escaped as in a form, and in a form in place of the values of
/// fields whose name contains "pass", "pwd", "secret" or "token" in either case. \param password
/// null or empty for none
std::string shown_body(std::string_view body, bool is_form, const char *password);

} // namespace corvella
