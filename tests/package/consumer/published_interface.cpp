// The interface as callers of version 1.0 were promised it: types of functions and variables, and
// the sizes of the records for both word sizes. It never changes; later additions need no entry.
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/c-utils.h"
#include "support/error.h"
#include "support/options.h"
#include "web/web.h"

namespace {

constexpr bool long_words = sizeof(void *) == 8;

static_assert(sizeof(void *) == 4 || sizeof(void *) == 8);
static_assert(sizeof(CorvellaAbortException) == (long_words ? 24 : 16));
static_assert(sizeof(string_buffer) == (long_words ? 16 : 12));
static_assert(sizeof(long_option) == (long_words ? 32 : 16));
static_assert(sizeof(FormField) == (long_words ? 16 : 8));
static_assert(sizeof(ProxySettings) == 256 + 4 + 256 + 256);
static_assert(sizeof(std::intptr_t) == sizeof(void *));

static_assert(WEB_FAILED == -1 && WEB_DONE == 0 && WEB_TIMED_OUT == 1 && WEB_CANCELLED == 2);
static_assert(OPEN_FAIL_FATAL == 1 && OPEN_FAIL_REPORT == 2);
static_assert(TIME_BASE_SECONDS == 852076800 && MILLISECOND_BASE_SECONDS == 1050000000);

const volatile void *volatile linked;

// Compiles only for exactly the promised type.
template <class Promised, class Published> void promise(Published &published)
{
    static_assert(std::is_same_v<Promised, Published>);
    linked = reinterpret_cast<const volatile void *>(&published);
}

using text_function = char *(const char *, char *);
using float_function = float(float);
using two_floats = float(float, float);

void promise_error()
{
    promise<int(int, const char *, ...)>(report_message);
    promise<int(int, const char *, char *, int)>(format_message_line);
    promise<void(const char *, const char *)>(write_raw_message);
    promise<OutputHook(OutputHook)>(set_output_hook);
    promise<MessageHook(MessageHook)>(set_message_hook);
    promise<int(const char *, const char *)>(default_output_hook);
    promise<int(int, const char *)>(default_message_hook);
    promise<int(const char *, const char *)>(test_output_hook);
    promise<int(int, const char *)>(test_message_hook);
    promise<std::int32_t()>(message_count);
    promise<int(const char *, ...)>(print_indented);
    promise<void(std::FILE *)>(set_print_stream);
    promise<std::FILE *()>(get_print_stream);
    promise<void(int)>(set_print_indent);
    promise<int(const char *)>(record_timestamped_line);
    promise<void(const char *, const char *, int)>(assertion_failed);
    promise<void(int, const char *, int)>(throw_abort);
    promise<void *(std::size_t)>(checked_malloc);
    promise<void *(void *, std::size_t, std::size_t)>(checked_realloc);
    promise<char *(const char *, std::size_t)>(checked_strdup);
    promise<void(void *)>(checked_free);
}

void promise_text()
{
    promise<char *(const char *, std::va_list)>(format_string_alloc);
    promise<char *(const char *, ...)>(format_string_new);
    promise<std::uint32_t(string_buffer *, const char *, ...)>(string_buffer_append_format);
    promise<char *(string_buffer *)>(string_buffer_data);
    promise<void(string_buffer *)>(string_buffer_free);
    promise<void(const char *, char *)>(string_to_lower);
    promise<text_function>(string_to_upper);
    promise<text_function>(remove_blanks_and_underscores);
    promise<text_function>(remove_periods);
    promise<text_function>(remove_spaces);
    promise<text_function>(line_breaks_to_spaces);
    promise<text_function>(collapse_spaces);
    promise<text_function>(underscores_to_spaces);
    promise<text_function>(spaces_to_underscores);
    promise<text_function>(double_percent_signs);
    promise<text_function>(underscores_to_camel_case);
    promise<text_function>(last_word_of_name);
    promise<text_function>(keep_identifier_characters);
    promise<text_function>(first_word_of_name);
    promise<unsigned char *(unsigned char *, const unsigned char *)>(copy_counted_string);
    promise<char *(char *, const char *, std::size_t)>(copy_string_bounded);
    promise<int(char *, std::size_t, const char *, ...)>(format_string_bounded);
    promise<char *(char *)>(normalize_spaces_in_place);
    promise<int(const char *)>(leading_non_space_length);
    promise<int(const char *, const char *)>(compare_first_words);
    promise<void()>(ring_bell);
    promise<void(const char *, char *, int)>(insert_string_into_string);
    promise<char *(const char *, const char *, const char *, char *)>(replace_all_substrings);
    promise<int(const char *, int, char *)>(nth_word);
    promise<text_function>(url_encode);
    promise<int(const char *, float *)>(parse_float);
    promise<void(char *, int, int, int)>(wrap_text_in_place);
}

void promise_numbers()
{
    promise<int(int, int)>(min_int);
    promise<int(int, int)>(max_int);
    promise<int(int, int, int)>(clamp_int);
    promise<int(int)>(abs_int);
    promise<two_floats>(min_float);
    promise<two_floats>(max_float);
    promise<float(float, float, float)>(clamp_float);
    promise<float_function>(abs_float);
    promise<float(float, float, float)>(lerp_float);
    promise<float(float, float, float, float, float)>(remap_float);
    promise<float(float, float, float, float, float)>(remap_clamped_float);
    promise<float(float, float, float, float)>(distance_2d);
    promise<two_floats>(modulo_float);
    promise<float_function>(fraction_float);
    promise<two_floats>(floor_to_step);
    promise<two_floats>(round_to_step);
    promise<float_function>(hash_noise_float);
}

void promise_files_and_machine()
{
    promise<std::int32_t>(open_file_count);
    promise<std::int32_t>(file_opened_for_reading);
    promise<std::FILE *(const char *, const char *, int)>(open_file);
    promise<std::FILE *(const char *, const char *, const char *, int)>(open_file_with_fallback);
    promise<int(std::FILE *)>(close_file);
    promise<int(const char *)>(file_exists);
    promise<int(const char *)>(remove_path);
    promise<void(const char *, int (*)(const char *, std::intptr_t), std::intptr_t)>(
        for_each_regular_file);
    promise<const char *(const char *)>(path_base_name);
    promise<void(char *)>(get_os_name);
    promise<char *(char *, std::size_t)>(get_os_version);
    promise<void(char *, std::size_t)>(get_host_name);
    promise<char *(char *, std::size_t, long)>(get_process_command_line);
}

void promise_time()
{
    promise<const char *const[13]>(month_names);
    promise<double>(timer_start_mark);
    promise<double()>(current_time_seconds);
    promise<std::uint32_t()>(current_time_milliseconds);
    promise<void()>(start_timer);
    promise<float()>(elapsed_time);
    promise<void(float)>(sleep_seconds);
    promise<int(char *)>(month_from_name);
    promise<std::int32_t(std::int32_t, std::int32_t, std::int32_t)>(day_number_from_date);
    promise<void(std::int32_t, std::int32_t *, std::int32_t *, std::int32_t *)>(
        date_from_day_number);
    promise<char *(std::int32_t, char *)>(format_date_long);
    promise<char *(std::int32_t, char *)>(format_date_compact);
    promise<std::int32_t()>(today_day_number);
    promise<int(const char *, std::int32_t *)>(parse_date);
}

void promise_options()
{
    using long_options = int(int, char **, const char *, const long_option *, int *);
    promise<std::int32_t>(option_index);
    promise<char *>(option_argument);
    promise<std::int32_t>(option_code);
    promise<std::int32_t>(option_errors);
    promise<std::int32_t>(option_position);
    promise<int(int, char **, const char *)>(get_options);
    promise<long_options>(get_long_options);
    promise<long_options>(get_long_options_only);
    promise<int(int, char **, const char *, const long_option *, int *, int)>(parse_options);
}

void promise_web()
{
    promise<volatile std::sig_atomic_t>(web_cancel_requested);
    promise<int(const char *, const char *, const char *, std::uint16_t, const char *, const char *,
                std::string_view, char **, char **, const char *, std::uint16_t, const char *,
                const char *)>(web_transaction);
    promise<void(const char *, ...)>(set_web_error);
    promise<const char *()>(web_last_error);
    promise<void(void (*)(void *), void *)>(set_web_idle_callback);
    promise<void(void (*)(WebStep, void *), void *)>(set_web_step_callback);
    promise<void(void (*)(std::size_t, void *), void *)>(set_web_progress_callback);
    promise<void(void (*)(std::size_t, void *), void *)>(set_web_send_callback);
    promise<const char *()>(system_error_text);
    promise<int(int)>(base64_encoded_length);
    promise<char *(const void *, int, char *)>(base64_encode);
    promise<int(const char *, const char *, int, const FormField *, char **, char **, const char *,
                std::uint16_t, const char *, const char *)>(web_request);
    promise<void(int, const FormField *, std::string &, std::string &)>(build_form_body);
    promise<char *(char *, const char *)>(form_escape);
    promise<char *(char *, const char *, int)>(form_escape_bounded);
    promise<int(const char *, const char *, std::string_view, char **, char **, const char *,
                std::uint16_t, const char *, const char *)>(web_post);
    promise<int(const char *)>(check_reply_status);
    promise<int(const char *, const char *)>(check_reply_complete);
    promise<const char *(const char *, const char *, char *, int)>(find_reply_header);
    promise<bool(char *, std::size_t, std::int32_t *)>(system_http_proxy);
    promise<int(ProxySettings *, const char *, const char *, const char *)>(fill_proxy_settings);
    promise<int(const char *, const char *, float, const char *, const char *, const char *,
                const char *, const char *, int, char *, char *, char *, char *, const char *,
                std::uint16_t, const char *, const char *)>(query_product_update);
}

} // namespace

int main()
{
    promise_error();
    promise_text();
    promise_numbers();
    promise_files_and_machine();
    promise_time();
    promise_options();
    promise_web();
}
