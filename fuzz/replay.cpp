// Feeds a fuzzer every file of the named folders, for a build without a fuzzing engine. What is
// wrong ends the process.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/input.h"

namespace {

std::string content_of(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int replay(const std::string &folder)
{
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        std::printf("%s\n", entry.path().c_str());
        std::fflush(stdout);
        const std::string content = content_of(entry.path());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.data()),
                               content.size());
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        if (replay(argv[i]) == 0) {
            std::printf("%s holds no input\n", argv[i]);
            return 1;
        }
    }
    return argc > 1 ? 0 : 1;
}
