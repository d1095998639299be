// A caller whose own functions and variables have the names of the library's internal ones: another
// file defines them, with the same parameters. The library must call its own.
#include <cstdio>
#include <cstring>

#include "support/c-utils.h"
#include "support/error.h"
#include "support/options.h"
#include "web/web.h"

extern int own_calls; // counts the calls of the caller's functions
int is_digit(char);

namespace {

int failures = 0;

void expect(bool holds, const char *what)
{
    if (!holds) {
        std::printf("not so: %s\n", what);
        ++failures;
    }
}

bool gives(const char *expected, const char *given)
{
    return std::strcmp(expected, given) == 0;
}

void expect_texts()
{
    char text[64];
    float number = 0;
    expect(parse_float(" 12.5e1", &number) == 1 && number == 125.0F, "parse_float");
    string_to_lower("AbC", text);
    expect(gives("abc", text), "string_to_lower");
    expect(gives("a%20b", url_encode("a b", text)), "url_encode");
    expect(nth_word("one two", 1, text) == 4 && gives("two", text), "nth_word");
    expect(gives("a b", collapse_spaces("a   b", text)), "collapse_spaces");
    std::int32_t day = 0;
    expect(parse_date("1Jan2000", &day) == 8 && day == 2451545, "parse_date");
}

void expect_messages()
{
    char line[64];
    format_message_line(9, "text\n", line, sizeof line);
    expect(gives("Error: text\a", line), "format_message_line");
    std::FILE *const printed = std::tmpfile();
    set_print_stream(printed);
    set_message_hook([](int, const char *) { return 7; });
    expect(report_message(3, "%d", 1) == 7, "report_message");
    std::rewind(printed);
    expect(std::fgets(line, sizeof line, printed) != nullptr && gives("Note: 1\n", line),
           "the printed line");
}

void expect_options()
{
    char program[] = "program", number[] = "-1", option[] = "--verb", unknown[] = "-x";
    char *vector[] = {program, number, option, unknown, nullptr};
    const long_option table[] = {{"verbose", 0, nullptr, 'v'}, {nullptr, 0, nullptr, 0}};
    option_errors = 0;
    expect(get_long_options(4, vector, "v", table, nullptr) == 'v', "an abbreviated name");
    expect(get_long_options(4, vector, "v", table, nullptr) == '?', "an unknown option");
    expect(get_long_options(4, vector, "v", table, nullptr) == -1, "a number");
}

void expect_web_client()
{
    char escaped[16];
    expect(gives("a%2fb", form_escape(escaped, "a/b")), "form_escape");
    expect(check_reply_status("HTTP/1.0 404 Not Found\r\n") == -1, "check_reply_status");
    char *header = nullptr;
    char *body = nullptr;
    expect(web_request("ftp://host/", "POST", 0, nullptr, &header, &body, nullptr, 0, nullptr,
                       nullptr) == -1 &&
               gives("Protocol should be HTTP, not FTP", web_last_error()),
           "web_request");
}

} // namespace

int main()
{
    expect_texts();
    expect_messages();
    expect_options();
    expect_web_client();
    expect(own_calls == 0, "the library calls none of its caller's functions");
    is_digit('1');
    expect(own_calls == 1, "the caller calls its own");
    return failures;
}
