#include "tests/harness/terminal.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

bool bytes_wait(int descriptor, int milliseconds)
{
    pollfd reading = {descriptor, POLLIN, 0};
    return poll(&reading, 1, milliseconds) > 0 && (reading.revents & POLLIN) != 0;
}

/// The lines of a terminal and the place of the next character.
class Screen {
public:
    void take(std::string_view text)
    {
        while (!text.empty()) {
            text.remove_prefix(take_first(text));
        }
    }

    std::vector<std::string> lines() const
    {
        std::vector<std::string> trimmed = lines_;
        for (std::string &line : trimmed) {
            line.erase(line.find_last_not_of(' ') + 1);
        }
        return trimmed;
    }

private:
    /// \return how many characters it took.
    std::size_t take_first(std::string_view text)
    {
        if (text.substr(0, 2) == "\x1b[") {
            const std::size_t end = text.find_first_not_of("0123456789;", 2);
            const std::size_t length = std::min(end, text.size() - 1) + 1;
            take_sequence(text.substr(2, length - 2));
            return length;
        }
        take_character(text.front());
        return 1;
    }

    void take_sequence(std::string_view sequence)
    {
        if (sequence == "K" || sequence == "0K") {
            line().resize(std::min(column_, line().size()));
        } else if (sequence == "2K") {
            line().clear();
        }
    }

    void take_character(char character)
    {
        if (character == '\r') {
            column_ = 0;
        } else if (character == '\n') {
            lines_.emplace_back();
        } else if (character == '\b') {
            column_ -= column_ > 0 ? 1 : 0;
        } else if (character != '\a') {
            line().resize(std::max(line().size(), column_ + 1), ' ');
            line()[column_++] = character;
        }
    }

    std::string &line()
    {
        return lines_.back();
    }

    std::vector<std::string> lines_ = {""};
    std::size_t column_ = 0;
};

} // namespace

std::vector<std::string> shown_on_screen(std::string_view written)
{
    Screen screen;
    screen.take(written);
    return screen.lines();
}

Terminal::Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY))
{
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
        throw std::runtime_error("no terminal for the test");
    }
    slave_ = open(ptsname(master_), O_RDWR | O_NOCTTY);
    termios settings = {};
    tcgetattr(slave_, &settings);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(slave_, TCSANOW, &settings);
}

Terminal::~Terminal()
{
    close(slave_);
    close(master_);
}

void Terminal::become_controlling() const
{
    setsid();
    ioctl(STDERR_FILENO, TIOCSCTTY, 0);
}

void Terminal::type(std::string_view keys) const
{
    if (write(master_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::runtime_error("the terminal takes no keys");
    }
}

const std::string &Terminal::written()
{
    std::array<char, 4096> block;
    while (bytes_wait(master_, 0)) {
        const ssize_t count = read(master_, block.data(), block.size());
        if (count <= 0) {
            break;
        }
        written_.append(block.data(), static_cast<std::size_t>(count));
    }
    return written_;
}

std::vector<std::string> Terminal::screen()
{
    return shown_on_screen(written());
}

bool Terminal::wait_until_seen(const std::function<bool(const std::string &line)> &accepts,
                               int seconds)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        const std::vector<std::string> lines = screen();
        if (std::any_of(lines.begin(), lines.end(), accepts)) {
            return true;
        }
        bytes_wait(master_, 50);
    }
    return false;
}
