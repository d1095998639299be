// The walk of a directory against <filesystem>.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "bench/harness.h"
#include "support/c-utils.h"

namespace {

constexpr int file_count = 5000;

/// Made when first asked for, removed when the program ends.
const std::string &directory_of_files()
{
    static const TemporaryDirectory directory;
    static const bool made = [] {
        for (int i = 0; i < file_count; ++i) {
            std::ofstream file(directory.path() + "/file-" + std::to_string(i) + ".txt");
        }
        std::filesystem::create_directory(directory.path() + "/directory");
        return true;
    }();
    (void)made;
    return directory.path();
}

int note_path(const char *path, std::intptr_t user)
{
    reinterpret_cast<std::vector<std::string> *>(user)->emplace_back(path);
    return 0;
}

int count_path(const char *, std::intptr_t user)
{
    ++*reinterpret_cast<std::size_t *>(user);
    return 0;
}

/// Calls \p take with the path of each regular file, asking the status of every entry.
template <typename Take> void walk_by_peer(const std::string &directory, Take take)
{
    for (const auto &entry : std::filesystem::directory_iterator(directory)) {
        if (std::filesystem::status(entry.path()).type() == std::filesystem::file_type::regular) {
            take(entry.path().c_str());
        }
    }
}

const Agreement agreement("walk", [] {
    std::vector<std::string> ours;
    std::vector<std::string> peer;
    for_each_regular_file(directory_of_files().c_str(), note_path,
                          reinterpret_cast<std::intptr_t>(&ours));
    walk_by_peer(directory_of_files(), [&](const char *path) { peer.emplace_back(path); });
    std::sort(ours.begin(), ours.end());
    std::sort(peer.begin(), peer.end());
    return ours.size() == file_count && ours == peer;
});

void walk_ours(benchmark::State &state)
{
    std::size_t count = 0;
    for (auto _ : state) {
        for_each_regular_file(directory_of_files().c_str(), count_path,
                              reinterpret_cast<std::intptr_t>(&count));
    }
    benchmark::DoNotOptimize(count);
}
BENCHMARK(walk_ours)->Unit(benchmark::kMillisecond);

void walk_filesystem(benchmark::State &state)
{
    std::size_t count = 0;
    for (auto _ : state) {
        walk_by_peer(directory_of_files(), [&](const char *) { ++count; });
    }
    benchmark::DoNotOptimize(count);
}
BENCHMARK(walk_filesystem)->Unit(benchmark::kMillisecond);

} // namespace
