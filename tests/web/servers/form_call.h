/// \file
/// A form posted by web_request(), with its fields as values.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/web/web_call.h"

using FormFields = std::vector<std::pair<std::string, std::string>>;

/// Posts \p fields to \p url; \p call gives proxy and credentials.
WebOutcome post_form(const std::string &url, const FormFields &fields, const WebCall &call = {});

/// Gets \p url; \p call gives proxy and credentials.
WebOutcome get_page(const std::string &url, const WebCall &call = {});

/// What the status check says of a reply: its last error text, or "" when it accepts it.
std::string status_complaint(const WebOutcome &outcome);
