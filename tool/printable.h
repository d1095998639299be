/// \file
/// Text of others on a terminal.
#pragma once

#include <string>
#include <string_view>

/// \return \p text with a "?" for every control character that could drive a terminal: all of ASCII
/// but tab, line feed and a carriage return in front of one, and those of 0x80 to 0x9F, be they a
/// byte of their own or in UTF-8. Every other byte stays, well-formed UTF-8 above all.
std::string printable_text(std::string_view text);
