#include "tests/tool/process_facts.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <thread>
#include <unistd.h>

std::string file_of_process(pid_t process, const char *name)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string writable_memory(pid_t process)
{
    constexpr std::uintptr_t largest = 1U << 28;
    const int memory = open(("/proc/" + std::to_string(process) + "/mem").c_str(), O_RDONLY);
    EXPECT_GE(memory, 0);
    std::istringstream maps(file_of_process(process, "maps"));
    std::string all;
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        std::string rights;
        std::istringstream(line) >> std::hex >> begin >> dash >> end >> rights;
        if (rights.rfind("rw", 0) == 0 && end - begin < largest) {
            std::string bytes(end - begin, '\0');
            const ssize_t size =
                pread(memory, bytes.data(), bytes.size(), static_cast<off_t>(begin));
            all.append(bytes, 0, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        }
    }
    close(memory);
    return all;
}

void let_it_wait(RunningProgram &program)
{
    using std::chrono::milliseconds;
    int quiet_looks = 0;
    for (int looks = 0; looks < 1000 && quiet_looks < 10; ++looks) {
        std::this_thread::sleep_for(milliseconds(10));
        const std::string facts = file_of_process(program.process().pid(), "stat");
        // Without /proc, the time alone.
        const bool sleeps = facts.empty() || facts.find(") S ") != std::string::npos;
        quiet_looks = sleeps ? quiet_looks + 1 : 0;
    }
    EXPECT_EQ(quiet_looks, 10);
}
