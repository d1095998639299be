/// \file
/// Texts of others, which hold what they like.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvella {

/// \return \p text with a "?" for every control character that could drive a terminal: all of ASCII
/// but tab, line feed and a carriage return in front of one, and those of 0x80 to 0x9F, be they a
/// byte of their own or in UTF-8. Every other byte stays, well-formed UTF-8 above all.
std::string printable_text(std::string_view text);

/// \return what \p descriptor gets of a text: printable_text() if it is a terminal, else all of it.
std::string sanitized_for(int descriptor, const std::string &text);

/// \return the lines of a text without their ends, which are line feeds and carriage returns; those
/// that are empty are left out.
std::vector<std::string> lines_of(const std::string &text);

} // namespace corvella
