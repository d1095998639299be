/// \file
/// What is written to a standard stream, in memory. Without the descriptor: a fuzzer does this
/// thousands of times a second.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Takes the place of `stdout` or `stderr` for as long as it lives.
class CapturedStream {
public:
    explicit CapturedStream(std::FILE *&stream) : stream_(stream), saved_(stream)
    {
        stream_ = open_memstream(&text_, &size_);
    }
    CapturedStream(const CapturedStream &) = delete;
    CapturedStream &operator=(const CapturedStream &) = delete;
    ~CapturedStream()
    {
        std::fclose(stream_);
        stream_ = saved_;
        std::free(text_);
    }

    std::string text() const
    {
        std::fflush(stream_);
        return std::string(text_, size_);
    }

private:
    std::FILE *&stream_;
    std::FILE *saved_;
    char *text_ = nullptr;
    std::size_t size_ = 0;
};
