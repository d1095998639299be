/// \file
/// A terminal for a program to write on, and what then stands on it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class Terminal {
public:
    /// \throws std::runtime_error when the system has none.
    Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal();

    /// The end for the program: its standard error, say.
    int program_end() const
    {
        return slave_;
    }
    /// To be called in the program's process before it is loaded: it then gets the signals of
    /// this terminal's keys. Makes system calls only.
    void become_controlling() const;
    void type(std::string_view keys) const;

    /// Everything written so far, control characters and all.
    const std::string &written();
    /// What is to be seen, line by line, without the blanks at the ends.
    std::vector<std::string> screen();
    /// Waits until a line that is to be seen pleases \p accepts. \return whether one did in time.
    bool wait_until_seen(const std::function<bool(const std::string &line)> &accepts, int seconds);

private:
    int master_;
    int slave_;
    std::string written_;
};

/// What a terminal shows after \p written. Knows carriage return, line feed, backspace and the
/// sequences that erase in a line; the bell shows nothing.
std::vector<std::string> shown_on_screen(std::string_view written);
