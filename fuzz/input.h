/// \file
/// What a fuzzer is given, taken apart from its start.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// A fuzzer: what the engine, or else replay.cpp, calls for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

class Input {
public:
    Input(const std::uint8_t *data, std::size_t size)
        : rest_(reinterpret_cast<const char *>(data), size)
    {
    }

    /// Takes the bytes up to the next \p end, or all of them, and drops the \p end.
    std::string up_to(char end)
    {
        const std::size_t size = std::min(rest_.find(end), rest_.size());
        const std::string taken = rest_.substr(0, size);
        rest_.erase(0, size + 1);
        return taken;
    }

    std::string line()
    {
        return up_to('\n');
    }

    /// Without NUL bytes.
    std::string text()
    {
        return up_to('\0');
    }

    /// Takes what \p line begins with as a decimal number.
    static int number(std::string &line)
    {
        char *end = nullptr;
        const long long value = std::strtoll(line.c_str(), &end, 10);
        line.erase(0, static_cast<std::size_t>(end - line.c_str()));
        return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
    }

    bool empty() const
    {
        return rest_.empty();
    }

    /// All that has not been taken.
    const std::string &rest() const
    {
        return rest_;
    }

private:
    std::string rest_;
};
