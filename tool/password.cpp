#include "tool/password.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "support/error.h"
#include "tool/password_prompt.h"

namespace corvella {

namespace {

enum read_result {
    READ_DONE,
    READ_FAILED,
    READ_END,
    READ_INVALID,
};

/// Reads one byte at a time: neither reads past the line nor leaves a copy in a buffer.
/// \return false at the end of the file, with errno 0, or after an error.
bool read_byte(char &byte)
{
    ssize_t count;
    do {
        errno = 0;
        count = read(STDIN_FILENO, &byte, 1);
    } while (count < 0 && errno == EINTR);
    return count == 1;
}

/// A line that is being read. A carriage return is held back until the next byte shows that it does
/// not belong to the end of the line.
struct partial_line {
    char *text;
    std::size_t size;
    std::size_t length;
    bool holds_return;
};

/// \return false if the byte is NUL or has no room.
bool append(partial_line &line, char byte)
{
    if (byte == '\0' || line.length == line.size - 1) {
        return false;
    }
    line.text[line.length++] = byte;
    return true;
}

bool append_held_return(partial_line &line)
{
    const bool fits = !line.holds_return || append(line, '\r');
    line.holds_return = false;
    return fits;
}

bool append_or_hold(partial_line &line, char byte)
{
    if (!append_held_return(line)) {
        return false;
    }
    line.holds_return = byte == '\r';
    return line.holds_return || append(line, byte);
}

/// Reads a line of 1 to \p size - 1 bytes that ends in LF, CR LF or the end of the file.
read_result read_line(char *text, std::size_t size)
{
    partial_line line = {text, size, 0, false};
    char byte = '\0';
    while (read_byte(byte)) {
        if (byte == '\n') {
            text[line.length] = '\0';
            return line.length > 0 ? READ_DONE : READ_INVALID;
        }
        if (!append_or_hold(line, byte)) {
            return READ_INVALID;
        }
    }
    if (errno != 0) {
        return READ_FAILED;
    }
    if (!append_held_return(line)) {
        return READ_INVALID;
    }
    text[line.length] = '\0';
    return line.length > 0 ? READ_DONE : READ_END;
}

void report_read_result(read_result result, int error)
{
    switch (result) {
    case READ_FAILED:
        report_message(9, "Read of the password failed: %s", std::strerror(error));
        break;
    case READ_END:
        report_message(9, "Standard input ends before the password.");
        break;
    case READ_INVALID:
        report_message(9, "A password is a line of 1 to 255 bytes, none of them NUL.");
        break;
    case READ_DONE:
        break;
    }
}

} // namespace

bool obtain_password(command_line &line)
{
    if (!line.reads_password) {
        return true;
    }
    const bool prompts = begin_password_prompt();
    const read_result result = read_line(line.proxy.password, sizeof line.proxy.password);
    const int error = errno;
    if (prompts) {
        end_password_prompt();
    }
    if (result == READ_DONE) {
        return true;
    }
    wipe(line.proxy.password, sizeof line.proxy.password);
    report_read_result(result, error);
    return false;
}

} // namespace corvella
