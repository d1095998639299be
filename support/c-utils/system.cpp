#include "support/c-utils/system.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

void get_os_name(char *buffer)
{
    constexpr char name[] = "Mac OS X";
    std::memcpy(buffer, name, sizeof name);
}

void get_host_name(char *buffer, std::size_t size)
{
    if (size == 0) {
        return;
    }
    buffer[0] = '\0';
    // Some systems cut a name that does not fit, some refuse it: what is there is kept.
    (void)!gethostname(buffer, size);
    buffer[size - 1] = '\0';
}

char *get_process_command_line(char *buffer, std::size_t size, long process_id)
{
    if (size == 0) {
        return nullptr;
    }
    buffer[0] = '\0';
    char path[64] = "";
    std::snprintf(path, sizeof path, "/proc/%ld/cmdline",
                  process_id != 0 ? process_id : static_cast<long>(getpid()));
    std::FILE *const file = std::fopen(path, "r");
    if (file == nullptr) {
        return nullptr;
    }
    std::size_t length = 0;
    std::size_t count;
    do {
        count = std::fread(buffer + length, 1, size - 1 - length, file);
        length += count;
    } while (count > 0);
    buffer[length] = '\0';
    std::fclose(file);
    return buffer[0] != '\0' ? buffer : nullptr;
}
