/// \file
/// A text of more than a gigabyte that takes one megabyte of memory.
#pragma once

#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <sys/mman.h>

/// Many times the same bytes, each an 'x', with a NUL behind them.
class EndlessText {
public:
    /// \param length of the text; the rest of its last megabyte is there too
    explicit EndlessText(std::size_t length) : size_((length / block + 1) * block)
    {
        void *const place = mmap(nullptr, size_, PROT_READ | PROT_WRITE,
                                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (place == MAP_FAILED) {
            return;
        }
        text_ = static_cast<char *>(place);
        std::FILE *const file = std::tmpfile();
        const std::string content(block, 'x');
        if (file == nullptr || std::fwrite(content.data(), 1, block, file) != block ||
            std::fflush(file) != 0) {
            throw std::runtime_error("no file for a long text");
        }
        bool is_mapped = true;
        for (std::size_t at = 0; is_mapped && at < size_; at += block) {
            is_mapped = mmap(text_ + at, block, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED,
                             fileno(file), 0) != MAP_FAILED;
        }
        std::fclose(file);
        if (!is_mapped) {
            throw std::runtime_error("no address space for a long text");
        }
        text_[length] = '\0'; // in a page of its own from here on
    }
    EndlessText(const EndlessText &) = delete;
    EndlessText &operator=(const EndlessText &) = delete;
    ~EndlessText()
    {
        if (text_ != nullptr) {
            munmap(text_, size_);
        }
    }
    /// \return null where the process has no place for it.
    const char *text() const
    {
        return text_;
    }

private:
    static constexpr std::size_t block = std::size_t{1} << 20;
    std::size_t size_;
    char *text_ = nullptr;
};
