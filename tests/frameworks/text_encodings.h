/// \file
/// The encodings that the stand-ins know: ASCII, ISO Latin 1 and UTF-8.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <optional>
#include <string>

/// \return \p bytes of \p encoding as UTF-8; nothing when they are no text of that encoding.
std::optional<std::string> decode(const std::string &bytes, CFStringEncoding encoding);

/// \param whole becomes false when the text has a character that \p encoding lacks
/// \return the text up to that character.
std::string encode(const std::string &utf8, CFStringEncoding encoding, bool &whole);
