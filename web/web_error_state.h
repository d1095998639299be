/// \file
/// Clearing the last error text. Internal to the web client.
#pragma once

/// Discards the last error text.
void clear_web_error();
