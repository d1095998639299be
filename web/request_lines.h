/// \file
/// The header lines that every request has. Internal to the layer: the program shows them too.
#pragma once

#include <string_view>

namespace corvella {

/// In the order in which they are sent, each with its line end. The Referer is a domain instead of
/// a URL on purpose: it is the maker's own.
inline constexpr std::string_view fixed_request_lines[] = {
    "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, */*\r\n",
    "Accept-Language: en-us\r\n",
    "User-Agent: Morvane_Auto1\r\n",
    "Referer: www." CORVELLA_MAKER_DOMAIN "\r\n",
};

} // namespace corvella
