/// \file
/// Blocks of exactly the size that a function may touch, and random texts of a few characters.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVELLA_TESTS_UNDER_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CORVELLA_TESTS_UNDER_ADDRESS_SANITIZER 1
#endif

/// A heap block of exactly `size` bytes. Under AddressSanitizer its ends are those of the block, so
/// that a read beyond them is seen as well; otherwise guard bytes stand on both sides.
class ExactBuffer {
public:
    explicit ExactBuffer(std::size_t size) : size_(size), block_(new char[size + 2 * guard_width])
    {
        std::memset(block_.get(), guard, size + 2 * guard_width);
        std::memset(data(), filling, size);
    }

    /// Holds a text with its NUL and \p room more bytes.
    explicit ExactBuffer(const std::string &text, std::size_t room = 0)
        : ExactBuffer(text.size() + 1 + room)
    {
        std::memcpy(data(), text.c_str(), text.size() + 1);
    }

    char *data() const
    {
        return block_.get() + guard_width;
    }

    std::size_t size() const
    {
        return size_;
    }

    /// All bytes of the block.
    std::string bytes() const
    {
        return std::string(data(), size_);
    }

    /// The text up to its NUL; says so when there is none.
    std::string text() const
    {
        const std::string all = bytes();
        const std::size_t end = all.find('\0');
        return end == std::string::npos ? all + "<no NUL>" : all.substr(0, end);
    }

    bool intact() const
    {
        const std::string expected(guard_width, guard);
        const char *behind = data() + size_;
        return expected.compare(0, guard_width, block_.get(), guard_width) == 0 &&
               expected.compare(0, guard_width, behind, guard_width) == 0;
    }

    /// What a fresh block holds.
    static constexpr char filling = 0x5a;

private:
#ifdef CORVELLA_TESTS_UNDER_ADDRESS_SANITIZER
    static constexpr std::size_t guard_width = 0;
#else
    static constexpr std::size_t guard_width = 64;
#endif
    static constexpr char guard = 0x33;
    std::size_t size_;
    std::unique_ptr<char[]> block_;
};

/// Texts of random length over a small alphabet, the same ones in every run.
class RandomTexts {
public:
    RandomTexts(unsigned seed, std::string alphabet, unsigned longest)
        : generator_(seed), alphabet_(std::move(alphabet)), longest_(longest)
    {
    }

    unsigned below(unsigned limit)
    {
        return static_cast<unsigned>(generator_()) % limit;
    }

    std::string next()
    {
        std::string text(below(longest_ + 1), ' ');
        for (char &c : text) {
            c = alphabet_[below(static_cast<unsigned>(alphabet_.size()))];
        }
        return text;
    }

private:
    std::mt19937 generator_;
    std::string alphabet_;
    unsigned longest_;
};
