// What the libraries call, read from their objects, against what the failure loops reach: a call
// that is new in the product makes these tests fail until a scenario reaches it.
#include <algorithm>
#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"

namespace {

using Names = std::set<std::string>;

/// Calls that have no failure, or none that a caller could meet.
const Names never_failing = {
    // Texts, bytes, characters and numbers.
    "memchr", "memcmp", "bcmp", "memcpy", "memmove", "memset", "strchr", "strcmp", "strcspn",
    "strlen", "strncpy", "strrchr", "strstr", "strtok", "strtoll", "isalnum", "isspace", "isupper",
    "tolower", "toupper", "fabs", "floor", "floorf", "pow", "sqrtf",
    // What always has an answer.
    "getenv", "getpid", "htons", "strerror", "hstrerror", "free",
    // Without a result.
    "exit", "perror",
    // No calls at all.
    "stderr", "stdout", "__errno_location", "__h_errno_location", "_GLOBAL_OFFSET_TABLE_",
    "__dso_handle",
    // Ends the program.
    "__fdelt_chk", "__stack_chk_fail", "__stack_chk_fail_local", "std::__glibcxx_assert_fail",
    "std::terminate",
    // Exceptions, for which the C++ library keeps a reserve of memory.
    "__cxa_allocate_exception", "__cxa_free_exception", "__cxa_throw", "__cxa_rethrow",
    "__cxa_begin_catch", "__cxa_end_catch", "__gxx_personality_v0", "_Unwind_Resume",
    // Static variables, and arithmetic that the compiler leaves to its library.
    "__cxa_atexit", "__cxa_guard_acquire", "__cxa_guard_release", "__cxa_guard_abort", "__divdi3",
    "__moddi3", "__udivdi3", "__umoddi3", "__udivmoddi4", "__divmoddi4"};

/// Whole families: what compilers add to measure and to check, and the parts of the C++ library
/// whose only failure is operator new's, which is replaced also inside of that library.
const std::vector<std::string> never_failing_families = {
    "__asan_",          "__ubsan_",
    "__sanitizer_",     "__tsan_",
    "__msan_",          "__gcov_",
    "__llvm_",          "__x86.get_pc_",
    "vtable for ",      "typeinfo for ",
    "operator delete",  "std::__throw_",
    "std::bad_alloc::", "std::allocator<char>::",
    "std::exception::", "std::__cxx11::basic_string<char"};

/// The lines that nm prints of the libraries, of each the symbol alone, without its parameters.
Names symbols(const std::string &options)
{
    const std::string command =
        std::string(CORVELLA_NM) + " -C " + options + " " + CORVELLA_LIBRARIES;
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> pipe(popen(command.c_str(), "r"),
                                                                pclose);
    Names names;
    std::array<char, 8192> line;
    while (pipe != nullptr && std::fgets(line.data(), line.size(), pipe.get()) != nullptr) {
        const std::string text = line.data();
        constexpr std::size_t widest = 16; // of an address, then a blank, the kind, and a blank
        const std::size_t address = text.find_first_not_of("0123456789abcdef ");
        if (address <= widest + 3 && address + 2 < text.size() && text[address + 1] == ' ') {
            const std::string name = text.substr(address + 2, text.find('\n') - address - 2);
            const bool is_template = name.find('<') < name.find('(');
            names.insert(is_template ? name : name.substr(0, name.find('(')));
        }
    }
    return names;
}

/// \p name without what marks a variant: of large files, of late times, of checked sizes.
std::string plain_name(const std::string &name)
{
    static const std::regex checked("__(.+)_chk"), late("__(.+?)(64)?(_time64|64)(_r)?"),
        large("(.+)64");
    std::smatch parts;
    if (std::regex_match(name, parts, checked) || std::regex_match(name, parts, late) ||
        std::regex_match(name, parts, large)) {
        return parts[1].str() + (parts.size() > 4 ? parts[4].str() : "");
    }
    return name;
}

bool never_fails(const std::string &name)
{
    const auto begins_name = [&name](const std::string &family) {
        return name.compare(0, family.size(), family) == 0;
    };
    return never_failing.count(name) != 0 || never_failing.count(plain_name(name)) != 0 ||
           std::any_of(never_failing_families.begin(), never_failing_families.end(), begins_name);
}

/// What the libraries take from elsewhere.
Names called_from_elsewhere()
{
    const Names own = symbols("--defined-only");
    Names called;
    for (const std::string &name : symbols("--undefined-only")) {
        if (own.count(name) == 0) {
            called.insert(name);
        }
    }
    return called;
}

std::set<Call> reached_by_scenarios()
{
    std::set<Call> reached;
    for (const FailureScenario &scenario : all_scenarios()) {
        reached.insert(scenario.reaches.begin(), scenario.reaches.end());
    }
    return reached;
}

} // namespace

TEST(ProductCalls, AreReadFromTheObjects)
{
    const Names called = called_from_elsewhere();
    for (const char *const name : {"malloc", "realloc", "socket", "recv", "opendir"}) {
        EXPECT_EQ(called.count(name), 1u) << name;
    }
    EXPECT_EQ(called.count("web_transaction"), 0u) << "it is the libraries' own";
}

TEST(ProductCalls, AreAllKnownToFailOrNeverTo)
{
    Names fallible_names;
    for (const FallibleCall &row : fallible_calls()) {
        fallible_names.insert(row.symbols.begin(), row.symbols.end());
    }
    for (const std::string &name : called_from_elsewhere()) {
        const bool can_fail = fallible_names.count(plain_name(name)) != 0;
        EXPECT_NE(can_fail, never_fails(name)) << name << " needs a failure loop";
    }
}

TEST(ProductCalls, ThatCanFailAreReachedByAFailureLoop)
{
    const std::set<Call> reached = reached_by_scenarios();
    for (const FallibleCall &row : fallible_calls()) {
        EXPECT_EQ(reached.count(row.call), 1u) << name_of(row.call);
    }
}

TEST(ProductCalls, OfTheTableAreTheProducts)
{
    Names called;
    for (const std::string &name : called_from_elsewhere()) {
        called.insert(plain_name(name));
    }
    called.insert(name_of(Call::New)); // mostly from within the C++ library
    for (const FallibleCall &row : fallible_calls()) {
        EXPECT_TRUE(std::any_of(row.symbols.begin(), row.symbols.end(),
                                [&](const std::string &symbol) { return called.count(symbol); }))
            << name_of(row.call) << " is called by no object";
    }
}
