#include "tool/password.h"

#include <cstring>
#include <unistd.h>

#include "support/error.h"

void wipe(char *text, std::size_t size)
{
    for (volatile char *c = text; c != text + size; ++c) {
        *c = '\0';
    }
}

bool obtain_password(command_line &line)
{
    if (!line.reads_password) {
        return true;
    }
    char *const password = line.proxy.password;
    std::size_t length = 0;
    while (length < sizeof line.proxy.password - 1 &&
           read(STDIN_FILENO, password + length, 1) == 1 && password[length] != '\n') {
        ++length;
    }
    password[length] = '\0';
    if (length == 0) {
        report_message(9, "Standard input has no password.");
        return false;
    }
    return true;
}
