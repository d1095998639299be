// The option parser's diagnostics with every call failing in turn; see tests/failures.
#include "support/options.h"
#include "tests/failures/failure_scenario.h"

#include <string>
#include <vector>

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

void scan()
{
    static char program[] = "prog";
    char *vector[] = {program, element.data(), nullptr};
    result = get_long_options(2, vector, "a:", table, nullptr);
}

std::string outcome()
{
    return std::string(1, static_cast<char>(result)) + "\n";
}

/// The result is the same whether it could be complained of or not.
template <char code>
FailureScenario complaint(const char *name, void (*prepare)(), const std::string &text)
{
    return {name,
            {Call::Print},
            prepare,
            scan,
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
    };
}
