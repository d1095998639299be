// The messages and the allocation with every call failing in turn; see tests/failures.
#include <cstdio>
#include <string>
#include <vector>

#include "support/error.h"
#include "tests/failures/failure_scenario.h"

namespace {

int result;
std::int32_t messages_before;
char *block;

void prepare_messages()
{
    result = -99;
    set_message_hook(nullptr);
    set_output_hook(nullptr);
    set_print_stream(nullptr);
    set_print_indent(0);
    messages_before = message_count();
}

std::string message_outcome()
{
    return std::to_string(result) + ", " + std::to_string(message_count() - messages_before) +
           " counted\n";
}

std::string result_outcome()
{
    return std::to_string(result) + "\n";
}

/// Each of the two copies is missing when its own write fails, each is empty when the text cannot
/// be formed, and the result is that of the last flush.
std::string two_copies(const Failure &failure)
{
    const std::string text = failure.call == Call::Format ? "" : "disk 7";
    return std::string(failure.hits(Call::Flush, 2) ? "-1" : "0") + ", 1 counted\n" +
           (failure.hits(Call::Print, 1) ? "" : "Error: " + text + "\n") +
           (failure.hits(Call::Print, 2) ? "" : "Error: " + text + "\a\n");
}

FailureScenario message_by_the_default_hook()
{
    return {"ReportMessage",
            {"report_message", "default_message_hook"},
            {Call::Time, Call::Ctime, Call::Format, Call::Print, Call::Flush},
            prepare_messages,
            [] { result = report_message(9, "disk %d", 7); },
            message_outcome,
            "0, 1 counted\nError: disk 7\nError: disk 7\a\n",
            two_copies,
            true};
}

FailureScenario message_by_the_test_hook()
{
    return {"ReportMessageByTheTestHook",
            {"report_message", "test_message_hook"},
            {Call::Time, Call::Ctime, Call::Format, Call::Print, Call::Flush},
            [] {
                prepare_messages();
                set_message_hook(test_message_hook);
            },
            [] { result = report_message(9, "disk %d", 7); },
            message_outcome,
            "0, 1 counted\nCORVELLATESTError: disk 7\a\nENDCORVELLATEST\nError: disk 7\n",
            [](const Failure &failure) {
                const std::string text = failure.call == Call::Format ? "" : "disk 7";
                return std::string(failure.hits(Call::Flush, 2) ? "-1" : "0") + ", 1 counted\n" +
                       (failure.hits(Call::Print, 2)
                            ? ""
                            : "CORVELLATESTError: " + text + "\a\nENDCORVELLATEST\n") +
                       (failure.hits(Call::Print, 1) ? "" : "Error: " + text + "\n");
            },
            true};
}

/// At level 0 no hook is called, and the result is the length of the recorded line: 24 characters
/// of the time, ": " and the text.
FailureScenario logged_message()
{
    return {"ReportMessageOfLevel0",
            {"report_message", "record_timestamped_line"},
            {Call::Time, Call::Ctime, Call::Format, Call::Print, Call::Flush},
            prepare_messages,
            [] { result = report_message(0, "disk %d", 7); },
            message_outcome,
            "37, 1 counted\nLog: disk 7\n",
            [](const Failure &failure) -> std::string {
                switch (failure.call) {
                case Call::Format:
                    return "31, 1 counted\nLog: \n";
                case Call::Print:
                    return "37, 1 counted\n";
                default:
                    return "37, 1 counted\nLog: disk 7\n";
                }
            },
            true};
}

FailureScenario indented_print()
{
    return {"PrintIndented",
            {"print_indented"},
            {Call::Format, Call::Print, Call::Flush},
            [] {
                prepare_messages();
                set_print_indent(2);
            },
            [] { result = print_indented("%s", "a\nb\n"); },
            result_outcome,
            "0\n..a\n..b\n",
            [](const Failure &failure) -> std::string {
                switch (failure.call) {
                case Call::Format:
                    return "0\n..";
                case Call::Print:
                    return "0\n";
                default:
                    return "-1\n..a\n..b\n";
                }
            },
            true};
}

FailureScenario raw_message()
{
    return {"WriteRawMessage",
            {"write_raw_message"},
            {Call::Time, Call::Ctime, Call::Print},
            prepare_messages,
            [] { write_raw_message("raw\n", "tag"); },
            [] { return std::string(); },
            "raw\n",
            [](const Failure &failure) -> std::string {
                return failure.call == Call::Print ? "" : "raw\n";
            },
            true};
}

FailureScenario default_output()
{
    return {"DefaultOutputHook",
            {"default_output_hook"},
            {Call::Print},
            prepare_messages,
            [] { result = default_output_hook("raw\n", nullptr); },
            result_outcome,
            "0\nraw\n",
            [](const Failure &) -> std::string { return "-1\n"; },
            true};
}

FailureScenario test_output()
{
    return {"TestOutputHook",
            {"test_output_hook"},
            {Call::Print, Call::Flush},
            prepare_messages,
            [] { result = test_output_hook("raw", "tag"); },
            result_outcome,
            "0\nCORVELLATESTtag: raw\nENDCORVELLATEST\n",
            [](const Failure &failure) -> std::string {
                return failure.call == Call::Print ? "0\n"
                                                   : "-1\nCORVELLATESTtag: raw\nENDCORVELLATEST\n";
            },
            true};
}

constexpr char thrown_by_an_assertion[] = "abort 5 support/error 429 ";
constexpr char sentence[] =
    "A Corvella internal error has occurred. Please save your work soon and restart.";

/// The first text that is formed goes to the record alone.
FailureScenario assertion()
{
    return {"AssertionFailed",
            {"assertion_failed", "throw_abort"},
            {Call::Time, Call::Ctime, Call::Format, Call::Print, Call::Flush},
            prepare_messages,
            [] { assertion_failed("1 == 2", "file.cpp", 3); },
            [] { return std::string(); },
            thrown_by_an_assertion + std::string("Error: ") + sentence + "\n\nError: " + sentence +
                "\a\n",
            [](const Failure &failure) {
                const bool lost = failure.hits(Call::Format, 2);
                const std::string first = lost ? "" : std::string(sentence) + "\n";
                const std::string second = lost ? "" : sentence;
                return thrown_by_an_assertion +
                       (failure.hits(Call::Print, 1) ? "" : "Error: " + first + "\n") +
                       (failure.hits(Call::Print, 2) ? "" : "Error: " + second + "\a\n");
            },
            true};
}

std::string block_outcome()
{
    const std::string text = block != nullptr ? block : "no block";
    checked_free(block);
    block = nullptr;
    return text;
}

std::string no_block(const Failure &)
{
    return "std::bad_alloc no block";
}

FailureScenario checked_malloc_scenario()
{
    return {"CheckedMalloc",
            {"checked_malloc"},
            {Call::Malloc},
            nullptr,
            [] {
                block = static_cast<char *>(checked_malloc(2));
                block[0] = '\0';
            },
            block_outcome,
            "",
            no_block};
}

FailureScenario checked_strdup_scenario()
{
    return {"CheckedStrdup",
            {"checked_strdup"},
            {Call::Malloc},
            nullptr,
            [] { block = checked_strdup("text", 100); },
            block_outcome,
            "text",
            no_block};
}

/// The old block stays the caller's, and what it was.
FailureScenario checked_realloc_scenario(const char *name, void (*call)())
{
    return {name,
            {"checked_realloc"},
            {Call::Realloc},
            [] { block = checked_strdup("content", 0); },
            call,
            block_outcome,
            "content",
            [](const Failure &) -> std::string { return "std::bad_alloc content"; }};
}

FailureScenario first_realloc()
{
    return {"CheckedReallocOfNull",
            {"checked_realloc"},
            {Call::Realloc},
            nullptr,
            [] {
                block = static_cast<char *>(checked_realloc(nullptr, 0, 4));
                block[0] = '\0';
            },
            block_outcome,
            "",
            no_block};
}

} // namespace

std::vector<FailureScenario> error_scenarios()
{
    return {
        message_by_the_default_hook(),
        message_by_the_test_hook(),
        logged_message(),
        indented_print(),
        raw_message(),
        default_output(),
        test_output(),
        assertion(),
        checked_malloc_scenario(),
        checked_strdup_scenario(),
        first_realloc(),
        checked_realloc_scenario(
            "CheckedReallocToMore",
            [] { block = static_cast<char *>(checked_realloc(block, 8, 100000)); }),
        checked_realloc_scenario("CheckedReallocToTheSame",
                                 [] { block = static_cast<char *>(checked_realloc(block, 8, 8)); }),
    };
}
