/// \file
/// What the tests of the file functions share: files, what the system says of them, and what
/// reports look like on standard error.
#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/stat.h>

#include "tests/harness/temporary_directory.h"

/// Writes a file. \return its path.
inline std::string make_file(const std::string &path, const std::string &text = "text")
{
    std::ofstream(path) << text;
    return path;
}

inline std::string contents_of(const std::string &path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The permission bits of what \p path leads to, with the set-id and sticky bits.
inline unsigned permissions_of(const std::string &path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return static_cast<unsigned>(status.st_mode) & 07777;
}

/// Whether there is anything at \p path, a dangling link too.
inline bool is_there(const std::string &path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
}

/// What standard error shows of a report whose text is \p text and a newline: the line of the print
/// stream, with both its newlines, and the line of the hook, with the bell.
inline std::string reported(const std::string &label, const std::string &text)
{
    return label + ": " + text + "\n\n" + label + ": " + text + "\a\n";
}
