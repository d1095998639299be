// The option parser's diagnostics with every call failing in turn; see tests/failures.
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/failures/failure_scenario.h"

namespace {

const long_option table[] = {
    {"size", 1, nullptr, 's'}, {"site", 0, nullptr, 'i'}, {nullptr, 0, nullptr, 0}};

std::string element;
int result;

void begin_scan_of(const char *text)
{
    element = text;
    option_index = 0;
}

/// The program's name and the element.
char **elements()
{
    static char program[] = "prog";
    static char *vector[3];
    vector[0] = program;
    vector[1] = element.data();
    return vector;
}

void scan()
{
    result = get_long_options(2, elements(), "a:", table, nullptr);
}

std::string outcome()
{
    return std::string(1, static_cast<char>(result)) + "\n";
}

/// The result is the same whether it could be complained of or not.
template <char code>
FailureScenario complaint(const char *name, void (*prepare)(), const std::string &text,
                          const char *function = "get_long_options", void (*call)() = scan)
{
    return {name,
            {function, "parse_options"},
            {Call::Print},
            prepare,
            call,
            outcome,
            std::string{code} + "\nprog: " + text + "\n",
            [](const Failure &) { return std::string{code} + "\n"; },
            true};
}

} // namespace

std::vector<FailureScenario> option_scenarios()
{
    return {
        complaint<'?'>(
            "InvalidOption", [] { begin_scan_of("-x"); }, "invalid option -- `-x'"),
        complaint<':'>(
            "MissingArgument", [] { begin_scan_of("-a"); }, "argument required for option `-a'"),
        complaint<':'>(
            "MissingArgumentOfALongOption", [] { begin_scan_of("--size"); },
            "argument required for option `--size'"),
        complaint<'?'>(
            "AmbiguousName", [] { begin_scan_of("--si"); },
            "option `--si' is ambiguous (could be `--size' or `--site')"),
        complaint<'?'>(
            "InvalidShortOption", [] { begin_scan_of("-x"); }, "invalid option -- `-x'",
            "get_options", [] { result = get_options(2, elements(), "a:"); }),
        complaint<':'>(
            "MissingArgumentBehindOneDash", [] { begin_scan_of("-size"); },
            "argument required for option `--size'", "get_long_options_only",
            [] { result = get_long_options_only(2, elements(), "a:", table, nullptr); }),
    };
}
