#include "support/options.h"

#include <cstdlib>
#include <cstring>

#include "support/options/diagnostics.h"
#include "support/options/long_names.h"
#include "support/options/operands.h"

std::int32_t option_index = 0;
char *option_argument = nullptr;
std::int32_t option_code = '?';
std::int32_t option_errors = 1;
std::int32_t option_position = 0;

namespace {

constexpr int scan_end = -1;
constexpr int error_code = '?';
constexpr int missing_argument_code = ':';
constexpr int operand_code = 1;

enum argument_kind { NO_ARGUMENT = 0, REQUIRED_ARGUMENT = 1, OPTIONAL_ARGUMENT = 2 };

/// One call's view of the command line.
struct option_scan {
    int count;
    char **vector;
    const char *short_options; ///< without the character that selects the mode; may be null
    char mode_character;       ///< '+' (require order), '-' (return in order) or NUL (permute)
    const long_option *long_options;
    bool long_only;
    std::int32_t skipped; ///< operands before the element, which is to move in front of them
};

/// The option found in the current element.
struct found_option {
    const long_option *record; ///< null for a short option
    std::int32_t kind;
    const char *attached; ///< what stands behind it in its element
};

/// Whether the last call could only have been repeated with the same result.
bool scan_is_stuck = false;

char *current_element(const option_scan &scan)
{
    return scan.vector[option_index];
}

bool is_past_the_end(const option_scan &scan)
{
    return option_index < 0 || option_index >= scan.count || current_element(scan) == nullptr;
}

const char *program_name(const option_scan &scan)
{
    return scan.vector[0] != nullptr ? scan.vector[0] : "";
}

option_scan begin_call(int count, char **vector, const char *short_options,
                       const long_option *long_options, int long_only)
{
    const bool names_mode =
        short_options != nullptr && (short_options[0] == '+' || short_options[0] == '-');
    return {count,
            vector,
            names_mode ? short_options + 1 : short_options,
            names_mode ? short_options[0] : '\0',
            long_options,
            long_only != 0,
            0};
}

/// Whether operands keep their place because the environment says so. It is asked at every call
/// whose result depends on it, so that a program may change it between calls.
bool environment_requires_order()
{
    return std::getenv("POSIXLY_CORRECT") != nullptr;
}

/// Finds the next option after the operands, counts these, and moves a "--" in front of them.
/// \return whether there is one; if not, option_index is where the operands begin.
bool find_option_behind_operands(option_scan &scan)
{
    const std::int32_t start = option_index;
    const std::int32_t skipped =
        corvella::operand_run(scan.vector + start, scan.count - start, scan.long_only);
    option_index = start + skipped;
    if (is_past_the_end(scan)) {
        option_index = start;
        return false;
    }
    if (skipped == 0) {
        return true;
    }
    if (environment_requires_order()) {
        option_index = start;
        return false;
    }
    if (corvella::is_two_dashes(current_element(scan))) {
        corvella::move_in_front(scan.vector + option_index, 1, skipped);
        option_index = start + 1;
        return false;
    }
    scan.skipped = skipped;
    return true;
}

/// Classifies the elements at the start of a new one.
/// \return whether an option is current; if not, \p result is the result of the call.
bool find_option_element(option_scan &scan, int &result)
{
    result = scan_end;
    if (scan.mode_character == '\0') {
        return find_option_behind_operands(scan);
    }
    if (!corvella::is_operand(current_element(scan), scan.long_only)) {
        return true;
    }
    if (scan.mode_character == '-') {
        option_code = operand_code;
        option_argument = current_element(scan);
        ++option_index;
        result = operand_code;
    }
    return false;
}

/// Tries the current element as a long option.
/// \return false when it is ambiguous; otherwise \p found says whether there is one.
bool find_long_option(const option_scan &scan, found_option &found)
{
    const char *const element = current_element(scan);
    const bool two_dashes = element[0] == '-' && element[1] == '-';
    if (scan.long_options == nullptr || option_position != 1 || !(two_dashes || scan.long_only)) {
        return true;
    }
    option_position = two_dashes ? 2 : 1;
    const char *const name = element + option_position;
    const corvella::long_name_match match = corvella::match_long_name(scan.long_options, name);
    if (match.second != nullptr) {
        corvella::complain_ambiguous(program_name(scan), element, match.record->name,
                                     match.second->name);
        option_code = error_code;
        // Deliberately the next call goes on within the element. Behind one dash that would be its
        // start again.
        scan_is_stuck = option_position == 1;
        return false;
    }
    if (match.record != nullptr) {
        found = {match.record, match.record->has_argument, name + match.length};
    }
    return true;
}

/// A program that moves option_index itself may leave the position behind the element's end.
void keep_position_inside(const char *element)
{
    if (option_position < 0 ||
        (option_position > 1 && static_cast<std::size_t>(option_position) > std::strlen(element))) {
        option_position = 1;
    }
}

void finish_element()
{
    ++option_index;
    option_position = 1;
}

/// Looks the current character up. \return false when there is no such option.
bool find_short_option(const option_scan &scan, found_option &found)
{
    const char *const character = current_element(scan) + option_position;
    const char *const entry =
        *character != '\0' ? std::strchr(scan.short_options, *character) : nullptr;
    if (entry != nullptr) {
        const std::int32_t kind = entry[1] != ':'   ? NO_ARGUMENT
                                  : entry[2] != ':' ? REQUIRED_ARGUMENT
                                                    : OPTIONAL_ARGUMENT;
        option_code = static_cast<unsigned char>(*character);
        found = {nullptr, kind, character + 1};
        return true;
    }
    corvella::complain_invalid(program_name(scan), *character);
    option_code = error_code;
    if (*character != '\0' && character[1] != '\0') {
        ++option_position;
    } else {
        finish_element();
    }
    return false;
}

/// \return what is attached as an argument, null when nothing is.
char *attached_argument(const found_option &found)
{
    const char *const text = found.attached[0] == '=' ? found.attached + 1 : found.attached;
    return text[0] != '\0' ? const_cast<char *>(text) : nullptr; // an element is not constant
}

/// \return false when the argument is missing; \p used_next says that it was the next element.
bool take_required_argument(const option_scan &scan, const found_option &found, bool &used_next)
{
    char *argument = attached_argument(found);
    if (argument == nullptr && option_index + 1 < scan.count) {
        argument = scan.vector[option_index + 1];
        used_next = true;
    }
    if (argument != nullptr) {
        option_argument = argument;
        option_position = 1;
        return true;
    }
    if (found.record != nullptr) {
        corvella::complain_missing_argument(program_name(scan), found.record->name);
    } else {
        corvella::complain_missing_argument(program_name(scan), static_cast<char>(option_code));
    }
    ++option_index;
    option_code = missing_argument_code;
    return false;
}

/// Deliberately an absent argument leaves the position where it is, so that only an option at the
/// start of its element finishes it; the next call goes on within the element, if it can.
void take_optional_argument(const option_scan &scan, const found_option &found)
{
    option_argument = attached_argument(found);
    if (option_argument != nullptr) {
        option_position = 1;
    } else if (option_position != 1) {
        scan_is_stuck = found.record == nullptr || scan.short_options == nullptr;
    }
}

void take_no_argument(const found_option &found)
{
    option_argument = nullptr;
    const bool cluster_goes_on = found.record == nullptr && found.attached[0] != '\0';
    option_position = cluster_goes_on ? option_position + 1 : 1;
}

/// Moves on behind a finished element, in front of the operands that were skipped before it.
void advance(const option_scan &scan, int used_elements)
{
    if (option_position != 1) {
        return;
    }
    if (scan.skipped > 0) {
        corvella::move_in_front(scan.vector + option_index, used_elements, scan.skipped);
    }
    option_index += used_elements - scan.skipped;
}

int result_of(const found_option &found, const option_scan &scan, int *index)
{
    if (found.record == nullptr) {
        return option_code;
    }
    if (index != nullptr) {
        *index = static_cast<int>(found.record - scan.long_options);
    }
    if (found.record->flag == nullptr) {
        return found.record->value;
    }
    *found.record->flag = found.record->value;
    return 0;
}

/// Parses the option at the current position.
int parse_current_option(const option_scan &scan, int *index)
{
    found_option found = {nullptr, NO_ARGUMENT, nullptr};
    if (!find_long_option(scan, found)) {
        return error_code;
    }
    if (found.record == nullptr && scan.short_options == nullptr) {
        scan_is_stuck = option_position != 1;
        advance(scan, 1);
        return option_code;
    }
    if (found.record == nullptr && !find_short_option(scan, found)) {
        return error_code;
    }
    bool used_next = false;
    if (found.kind == REQUIRED_ARGUMENT) {
        if (!take_required_argument(scan, found, used_next)) {
            return missing_argument_code;
        }
    } else if (found.kind == OPTIONAL_ARGUMENT) {
        take_optional_argument(scan, found);
    } else {
        take_no_argument(found);
    }
    advance(scan, used_next ? 2 : 1);
    return result_of(found, scan, index);
}

/// \return whether the options go on at the current element. A "--" ends them and is consumed.
bool options_go_on(const option_scan &scan)
{
    if (is_past_the_end(scan)) {
        return false;
    }
    if (corvella::is_two_dashes(current_element(scan))) {
        ++option_index;
        return false;
    }
    return true;
}

/// Restarts the scan if option_index is 0.
/// \return whether there is an element to parse; if not, the scan is at its end.
bool begin_step(const option_scan &scan)
{
    const bool restarts = option_index == 0;
    if (restarts) {
        scan_is_stuck = false;
    }
    // On purpose: a program whose own name is "--" has no options.
    if (!options_go_on(scan) || scan_is_stuck) {
        return false;
    }
    if (restarts) {
        option_index = 1;
        option_position = 1;
        if (!options_go_on(scan)) {
            return false;
        }
    }
    keep_position_inside(current_element(scan));
    return true;
}

} // namespace

int parse_options(int count, char **vector, const char *short_options,
                  const long_option *long_options, int *index, int long_only)
{
    if (count == 0 || vector == nullptr || (short_options == nullptr && long_options == nullptr)) {
        option_code = error_code;
        return error_code;
    }
    option_scan scan = begin_call(count, vector, short_options, long_options, long_only);
    if (!begin_step(scan)) {
        return scan_end;
    }
    int result;
    if (option_position == 1 && !find_option_element(scan, result)) {
        return result;
    }
    return parse_current_option(scan, index);
}

int get_options(int count, char **vector, const char *short_options)
{
    return parse_options(count, vector, short_options, nullptr, nullptr, 0);
}

int get_long_options(int count, char **vector, const char *short_options,
                     const long_option *long_options, int *index)
{
    return parse_options(count, vector, short_options, long_options, index, 0);
}

int get_long_options_only(int count, char **vector, const char *short_options,
                          const long_option *long_options, int *index)
{
    return parse_options(count, vector, short_options, long_options, index, 1);
}
