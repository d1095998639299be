#include "tool/command_line_scan.h"

#include <cstdlib>
#include <cstring>

namespace corvella {

namespace {

// What the parser returns beside the codes of the table.
constexpr int end_code = -1;
constexpr int operand_code = 1;
constexpr int missing_argument_code = ':';
constexpr int error_code = '?';

/// The option as typed, without an argument attached to it: that may be a password.
std::string typed_option(const char *element)
{
    return {element, std::strcspn(element, "=")};
}

std::string typed_name(const char *element)
{
    return typed_option(element + (element[0] == '-' && element[1] == '-' ? 2 : 1));
}

/// Says why the parser rejects an option. On purpose without its own diagnostic: that quotes the
/// whole element.
std::string rejection(const argument_scan &scan, const char *element)
{
    const std::string name = typed_name(element);
    std::vector<std::string> names;
    for (const long_option &option : scan.table) {
        if (option.name != nullptr && std::strncmp(option.name, name.c_str(), name.size()) == 0) {
            names.emplace_back(option.name);
        }
    }
    if (names.size() < 2) {
        return "unknown option " + typed_option(element);
    }
    return "ambiguous option " + typed_option(element) + " (could be -" + names[0] + " or -" +
           names[1] + ")";
}

bool takes_argument(const argument_scan &scan, int code)
{
    for (const long_option &option : scan.table) {
        if (option.name != nullptr && option.value == code) {
            return option.has_argument != 0;
        }
    }
    return false;
}

scanned_argument error_in(const char *element, const std::string &error)
{
    return {ARGUMENT_ERROR, element, 0, nullptr, error};
}

/// Makes the element at \p index the first one, so that the next call starts after it.
void restart_after(argument_scan &scan, int index)
{
    scan.count -= index;
    scan.vector += index;
    option_index = 0;
}

scanned_argument option_or_error(argument_scan &scan, int index, int code)
{
    const char *const element = scan.vector[index];
    if (code == error_code) {
        const std::string reason = rejection(scan, element);
        restart_after(scan, index);
        return error_in(element, reason);
    }
    if (code == missing_argument_code) {
        return error_in(element, "option " + typed_option(element) + " needs an argument");
    }
    if (takes_argument(scan, code)) {
        return {ARGUMENT_OPTION, element, code, option_argument, ""};
    }
    if (std::strchr(element, '=') != nullptr) {
        return error_in(element, "option " + typed_option(element) + " takes no argument");
    }
    return {ARGUMENT_OPTION, element, code, nullptr, ""};
}

} // namespace

argument_scan begin_scan(int count, char **vector, const std::vector<long_option> &table)
{
    option_index = 0;
    option_errors = 0;
    return {count, vector, table, false};
}

scanned_argument next_argument(argument_scan &scan)
{
    int index = option_index == 0 ? 1 : option_index;
    if (!scan.has_operands_only && index < scan.count &&
        std::strcmp(scan.vector[index], "--") == 0) {
        scan.has_operands_only = true;
        option_index = ++index;
    }
    if (index >= scan.count) {
        return {ARGUMENT_END, nullptr, 0, nullptr, ""};
    }
    if (!scan.has_operands_only) {
        const char *const mode = std::getenv("POSIXLY_CORRECT") != nullptr ? "+" : "-";
        const int code =
            get_long_options_only(scan.count, scan.vector, mode, scan.table.data(), nullptr);
        if (code != end_code && code != operand_code) {
            return option_or_error(scan, index, code);
        }
        scan.has_operands_only = code == end_code;
    }
    option_index = index + 1;
    return {ARGUMENT_OPERAND, scan.vector[index], 0, nullptr, ""};
}

} // namespace corvella
