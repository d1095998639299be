#include "tests/harness/temporary_directory.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace {

std::string new_directory()
{
    std::string path = testing::TempDir() + "corvella-" + std::string(6, 'X');
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("no directory " + path);
    }
    return std::filesystem::absolute(path).string();
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : path_(new_directory()) {}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::path(std::string_view name) const
{
    return path_ + "/" + std::string(name);
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view content) const
{
    std::ofstream file(path(name), std::ios::binary);
    file << content << std::flush;
    if (!file) {
        throw std::runtime_error("cannot write " + path(name));
    }
    return path(name);
}

std::string TemporaryDirectory::read(std::string_view name) const
{
    std::ifstream file(path(name), std::ios::binary);
    if (!file) {
        return "(cannot read " + path(name) + ")";
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TemporaryDirectory::names() const
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}
