/// \file
/// A buffer of which every byte can be told from a written one.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// \p size bytes of '#' to be written into, and a few behind them that nobody may write.
class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t size) : size_(size), bytes_(size + guard_size, '#') {}

    char *data()
    {
        return bytes_.data();
    }
    int size() const
    {
        return static_cast<int>(size_);
    }
    /// The text up to the NUL; all bytes when there is none.
    std::string text() const
    {
        const std::string all(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
        return all.substr(0, all.find('\0'));
    }
    bool is_untouched() const
    {
        return std::string(bytes_.begin(), bytes_.end()) == std::string(bytes_.size(), '#');
    }
    bool is_guard_intact() const
    {
        return std::string(bytes_.begin() + static_cast<std::ptrdiff_t>(size_), bytes_.end()) ==
               std::string(guard_size, '#');
    }

private:
    static constexpr std::size_t guard_size = 16;
    std::size_t size_;
    std::vector<char> bytes_;
};
