/// \file
/// A pipe that has no room and that nobody reads.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

class FullPipe {
public:
    FullPipe()
    {
        EXPECT_EQ(pipe(ends_), 0);
        fcntl(ends_[1], F_SETFL, O_NONBLOCK);
        const std::string filling(4096, '.');
        for (const std::size_t size : {filling.size(), std::size_t{1}}) {
            while (write(ends_[1], filling.data(), size) > 0) {
            }
        }
        fcntl(ends_[1], F_SETFL, 0);
    }
    FullPipe(const FullPipe &) = delete;
    FullPipe &operator=(const FullPipe &) = delete;
    ~FullPipe()
    {
        close(ends_[0]);
        close(ends_[1]);
    }
    int writing_end() const
    {
        return ends_[1];
    }

private:
    int ends_[2] = {-1, -1};
};
