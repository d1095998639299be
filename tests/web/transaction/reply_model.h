/// \file
/// A second, plain account of where a reply's header ends and of what its body keeps.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

using Pieces = std::vector<std::string>;

/// What a reply is to become. The pieces are what is there at once, of which a receive never takes
/// more than one.
struct ReplyModel {
    bool complete = false; ///< whether the header came to its end
    std::string header;
    std::string body;
    std::size_t lost = 0; ///< bytes of the body that are not kept
};

/// Where the line feed stands that ends the header: behind a line of carriage returns alone, or of
/// nothing, but not at the very beginning. npos when there is none.
inline std::size_t end_of_header(const std::string &reply)
{
    std::size_t line = 0;
    for (std::size_t feed = reply.find('\n'); feed != std::string::npos;
         feed = reply.find('\n', line)) {
        const std::string content = reply.substr(line, feed - line);
        if (feed != 0 && content.find_first_not_of('\r') == std::string::npos) {
            return feed;
        }
        line = feed + 1;
    }
    return std::string::npos;
}

/// \param receive_at_most what the system gives at once, however much is there
inline ReplyModel model_of(const Pieces &pieces, std::size_t receive_at_most)
{
    std::string reply;
    for (const std::string &piece : pieces) {
        reply += piece;
    }
    ReplyModel model;
    const std::size_t end = end_of_header(reply);
    model.complete = end != std::string::npos;
    model.header = reply.substr(0, end);
    std::size_t of_header = model.complete ? end + 1 : reply.size();
    const std::size_t chunk_size = std::min<std::size_t>(1023, receive_at_most);
    for (const std::string &piece : pieces) {
        const std::size_t skipped = std::min(of_header, piece.size());
        of_header -= skipped;
        for (std::size_t at = skipped; at < piece.size(); at += chunk_size) {
            const std::string chunk = piece.substr(at, chunk_size);
            const std::string kept = chunk.substr(0, chunk.find('\0'));
            model.body += kept;
            model.lost += chunk.size() - kept.size();
        }
    }
    return model;
}
