/// \file
/// The other end of the last error text's life. Internal to the web client.
#pragma once

/// Discards the last error text.
void clear_web_error();
