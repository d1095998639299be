/// \file
/// A directory for the files of one test.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A private directory below testing::TempDir(); goes away with all that is in it.
class TemporaryDirectory {
public:
    /// \throws std::runtime_error when it cannot be made.
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory();

    /// Its absolute path, or that of an entry in it.
    const std::string &path() const
    {
        return path_;
    }
    std::string path(std::string_view name) const;
    /// Makes or replaces a file. \return its path.
    std::string write(std::string_view name, std::string_view content) const;
    /// What a file holds; a text that says so when it cannot be read.
    std::string read(std::string_view name) const;
    /// The names in it, sorted.
    std::vector<std::string> names() const;

private:
    std::string path_;
};
