/// \file
/// Argument vectors for the option parser.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// The argument vector of a program, element 0 included; a null pointer stands at the count.
class Arguments {
public:
    Arguments(std::initializer_list<std::string> elements)
        : Arguments(std::vector<std::string>(elements))
    {
    }
    explicit Arguments(std::vector<std::string> elements) : texts_(std::move(elements))
    {
        for (std::string &text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
    }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    int count() const
    {
        return static_cast<int>(texts_.size());
    }
    char **vector()
    {
        return pointers_.data();
    }
    /// The elements in the order that they have now.
    std::vector<std::string> order() const
    {
        return {pointers_.begin(), pointers_.end() - 1};
    }

private:
    std::vector<std::string> texts_;
    std::vector<char *> pointers_;
};
