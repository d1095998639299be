// Parses the framed output on standard input: corvella -automated describe | parse_frames
#include <iostream>
#include <string>

int main()
{
    const std::string begin = "CORVELLATEST";
    std::string line;
    std::string end;
    while (std::getline(std::cin, line)) {
        const std::size_t colon = line.find(": ");
        if (line.rfind(begin, 0) != 0 || colon == std::string::npos ||
            !std::getline(std::cin, end) || end != "END" + begin) {
            std::cout << "reply, from: " << line << "\n"; // it is not framed, and comes last
            break;
        }
        const std::string tag = line.substr(begin.size(), colon - begin.size());
        const bool is_message = tag == "Error" || tag == "Warning";
        std::string text = line.substr(colon + 2);
        text.resize(text.size() - (is_message ? 1 : 0)); // without its bell
        std::cout << (is_message ? "message, " : "result, ") << tag << ": " << text << "\n";
    }
}
