/// \file
/// What the benchmarks share.
#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <string>

/// A comparison of ours with the peers on the bytes that are timed. It stands beside the benchmarks
/// as a static object and is run once, before anything is timed.
class Agreement {
public:
    using Comparison = bool (*)();
    Agreement(const char *subject, Comparison agree);
};

/// Runs all comparisons and names those that fail on standard error. \return whether none failed.
bool all_agree();

/// \return \p length bytes of \p sentence, over and over.
std::string repeated(const char *sentence, std::size_t length);

/// Sends standard error to a file for as long as it lives.
class StandardErrorTo {
public:
    explicit StandardErrorTo(const char *path);
    StandardErrorTo(const StandardErrorTo &) = delete;
    StandardErrorTo &operator=(const StandardErrorTo &) = delete;
    ~StandardErrorTo();

private:
    int saved_;
};

/// A directory that is removed with its files.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory();
    const std::string &path() const
    {
        return path_;
    }

private:
    std::string path_;
};
