#include "tool/generate/shell.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace corvella {

std::vector<program_option> all_options()
{
    std::vector<program_option> options;
    for (const option_group &group : option_groups()) {
        for (const program_option &option : group) {
            const auto has_its_name = [&option](const program_option &other) {
                return std::string(other.name) == option.name;
            };
            if (std::none_of(options.begin(), options.end(), has_its_name)) {
                options.push_back(option);
            }
        }
    }
    return options;
}

std::string with_argument_options(std::string text)
{
    constexpr std::string_view place = "ARGUMENT_OPTIONS";
    std::string pattern;
    for (const program_option &option : all_options()) {
        if (option.argument != nullptr) {
            pattern += (pattern.empty() ? "-" : " | -") + std::string(option.name);
        }
    }
    return text.replace(text.find(place), place.size(), pattern);
}

bool is_file(const char *argument)
{
    return std::strcmp(argument, "FILE") == 0 || std::strcmp(argument, "TARGET") == 0;
}

} // namespace corvella
