// The functions that the libraries publish, against what the failure loops run: a function that is
// new needs a scenario, or its place and reason here.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/failures/failure_scenario.h"

namespace {

using Names = std::set<std::string>;

struct HarmlessFunctions {
    const char *reason;
    Names names;
};

/// What can neither allocate nor ask the system for anything, and so meets no failure.
const std::vector<HarmlessFunctions> harmless = {
    {"arithmetic",
     {"abs_float",
      "abs_int",
      "base64_encoded_length",
      "clamp_float",
      "clamp_int",
      "date_from_day_number",
      "day_number_from_date",
      "distance_2d",
      "floor_to_step",
      "fraction_float",
      "hash_noise_float",
      "lerp_float",
      "max_float",
      "max_int",
      "min_float",
      "min_int",
      "modulo_float",
      "remap_clamped_float",
      "remap_float",
      "round_to_step"}},
    {"reads and writes bytes of its caller's",
     {"base64_encode",
      "collapse_spaces",
      "compare_first_words",
      "copy_counted_string",
      "copy_string_bounded",
      "double_percent_signs",
      "find_reply_header",
      "first_word_of_name",
      "form_escape",
      "form_escape_bounded",
      "format_message_line",
      "get_os_name",
      "keep_identifier_characters",
      "last_word_of_name",
      "leading_non_space_length",
      "line_breaks_to_spaces",
      "month_from_name",
      "normalize_spaces_in_place",
      "nth_word",
      "parse_date",
      "parse_float",
      "path_base_name",
      "remove_blanks_and_underscores",
      "remove_periods",
      "remove_spaces",
      "replace_all_substrings",
      "spaces_to_underscores",
      "string_to_lower",
      "string_to_upper",
      "underscores_to_camel_case",
      "underscores_to_spaces",
      "url_encode",
      "wrap_text_in_place"}},
    {"reads or sets a variable",
     {"get_print_stream", "message_count", "set_message_hook", "set_output_hook",
      "set_print_indent", "set_print_stream", "set_web_idle_callback", "set_web_progress_callback",
      "set_web_send_callback", "set_web_step_callback", "string_buffer_data", "web_last_error"}},
    {"gives memory back, which cannot fail", {"checked_free", "string_buffer_free"}},
    {"asks nothing of the systems that these loops run on",
     {"fill_proxy_settings", "get_os_version", "system_http_proxy"}},
};

/// The functions that the public headers declare.
Names published()
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> pipe(
        popen(CORVELLA_PUBLISHED " functions support web", "r"), pclose);
    Names names;
    std::array<char, 256> line;
    while (pipe != nullptr && std::fgets(line.data(), line.size(), pipe.get()) != nullptr) {
        names.insert(std::string(line.data(), std::strcspn(line.data(), "\n")));
    }
    EXPECT_FALSE(names.empty());
    return names;
}

Names run_by_scenarios()
{
    Names run;
    for (const FailureScenario &scenario : all_scenarios()) {
        EXPECT_FALSE(scenario.runs.empty()) << scenario.name;
        run.insert(scenario.runs.begin(), scenario.runs.end());
    }
    return run;
}

} // namespace

TEST(ProductFunctions, EachHasAFailureLoopOrAReasonWhyNot)
{
    const Names run = run_by_scenarios();
    for (const std::string &name : published()) {
        const auto reasons =
            std::count_if(harmless.begin(), harmless.end(), [&](const HarmlessFunctions &group) {
                return group.names.count(name) != 0;
            });
        const auto loops = static_cast<std::ptrdiff_t>(run.count(name));
        EXPECT_EQ(loops + reasons, 1) << name;
    }
}

TEST(ProductFunctions, WithAFailureLoopOrAReasonArePublished)
{
    const Names names = published();
    for (const std::string &name : run_by_scenarios()) {
        EXPECT_EQ(names.count(name), 1u) << name;
    }
    for (const HarmlessFunctions &group : harmless) {
        for (const std::string &name : group.names) {
            EXPECT_EQ(names.count(name), 1u) << name << ", which " << group.reason;
        }
    }
}
