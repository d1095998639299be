#include "tests/harness/listening.h"

#include <array>
#include <cstdio>
#include <dirent.h>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

/// The system's numbers of the sockets that a process has open.
std::set<std::string> sockets_of(pid_t process)
{
    std::set<std::string> numbers;
    const std::string directory = "/proc/" + std::to_string(process) + "/fd";
    DIR *const entries = opendir(directory.c_str());
    if (entries == nullptr) {
        return numbers;
    }
    while (const dirent *const entry = readdir(entries)) {
        std::array<char, 64> target = {};
        const std::string path = directory + "/" + entry->d_name;
        const ssize_t length = readlink(path.c_str(), target.data(), target.size() - 1);
        const std::string text(target.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
        if (text.rfind("socket:[", 0) == 0) {
            numbers.insert(text.substr(8, text.size() - 9));
        }
    }
    closedir(entries);
    return numbers;
}

} // namespace

// Another process that took the port first would accept connections too, so that connecting proves
// nothing.
bool listens(pid_t process, std::uint16_t port)
{
    std::array<char, 8> hexadecimal = {};
    std::snprintf(hexadecimal.data(), hexadecimal.size(), ":%04X", port);
    const std::set<std::string> own = sockets_of(process);
    std::ifstream table("/proc/net/tcp");
    for (std::string line; std::getline(table, line);) {
        std::istringstream columns(line);
        std::string row, local, remote, state, queues, timer, retries, user, delay, number;
        columns >> row >> local >> remote >> state >> queues >> timer >> retries >> user >> delay >>
            number;
        if (state == "0A" && own.count(number) != 0 &&
            local.find(hexadecimal.data()) != std::string::npos) {
            return true;
        }
    }
    return false;
}
