/// \file
/// Asking for a password on a terminal.
#pragma once

namespace corvella {

/// Shows a prompt on standard error and turns off the echo if standard input is a terminal. A
/// signal that ends or stops the program restores the echo first; once continued, it asks again.
/// \return whether it is a terminal; if so, call end_password_prompt().
bool begin_password_prompt();

/// Restores the echo and the signals. Discards input that is still unread.
void end_password_prompt();

} // namespace corvella
