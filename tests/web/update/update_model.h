/// \file
/// A second, plain account of the reading of a reply to the update query.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

/// Reads a body byte by byte: a name, a byte that is skipped, a value, and so on. The message is a
/// value that no line feed ends.
class UpdateReplyModel {
public:
    explicit UpdateReplyModel(const std::string &body)
    {
        for (const char byte : body) {
            take(byte);
        }
    }

    bool has_message() const
    {
        return name_ == "Message" && state_ != InName;
    }

    /// What a destination of \p capacity bytes holds, if it is written at all.
    std::optional<std::string> stored(const std::string &name, int capacity) const
    {
        const auto field = fields_.find(name);
        if (field == fields_.end()) {
            return name == "Message" && has_message() ? kept(value_, capacity) : std::nullopt;
        }
        return kept(field->second, capacity);
    }

private:
    enum State { InName, BehindColon, InValue };

    static std::optional<std::string> kept(const std::string &value, int capacity)
    {
        if (capacity < 1) {
            return std::nullopt;
        }
        return value.substr(0, static_cast<std::size_t>(capacity - 1));
    }

    void take(char byte)
    {
        if (state_ == BehindColon) {
            state_ = InValue;
        } else if (state_ == InName && byte == ':') {
            state_ = BehindColon;
        } else if (state_ == InName) {
            name_ += byte;
        } else if (byte == '\n' && name_ != "Message") {
            fields_[name_] = value_;
            name_.clear();
            value_.clear();
            state_ = InName;
        } else {
            value_ += byte;
        }
    }

    State state_ = InName;
    std::string name_;
    std::string value_;
    std::map<std::string, std::string> fields_;
};
