#include "support/error/hooks.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "support/error/internal.h"
#include "support/error/message_line.h"

namespace {

OutputHook output_hook = default_output_hook;
MessageHook message_hook = default_message_hook;

constexpr int fatal_level = 10;

} // namespace

OutputHook set_output_hook(OutputHook hook)
{
    return std::exchange(output_hook, hook != nullptr ? hook : default_output_hook);
}

MessageHook set_message_hook(MessageHook hook)
{
    return std::exchange(message_hook, hook != nullptr ? hook : default_message_hook);
}

int corvella::call_output_hook(const char *text, const char *tag)
{
    return output_hook(text, tag);
}

int corvella::call_message_hook(int level, const char *text)
{
    return message_hook(level, text);
}

int default_output_hook(const char *text, const char *)
{
    return std::fputs(text, stderr) < 0 ? EOF : 0;
}

int default_message_hook(int level, const char *text)
{
    char line[corvella::HOOK_LINE_SIZE];
    int length = corvella::compose_message_line(level, text, corvella::HOOK_TEXT_LIMIT, line,
                                                corvella::HOOK_LINE_SIZE - 1);
    line[length++] = '\n';
    std::fwrite(line, 1, static_cast<std::size_t>(length), stderr);
    const int result = std::fflush(stderr);
    if (level == fatal_level) {
        std::exit(1);
    }
    return result;
}

int test_output_hook(const char *text, const char *tag)
{
    std::printf("CORVELLATEST%s: %s\nENDCORVELLATEST\n", tag, text);
    return std::fflush(stdout);
}

int test_message_hook(int level, const char *text)
{
    char line[corvella::HOOK_LINE_SIZE];
    corvella::compose_message_line(level, text, corvella::HOOK_TEXT_LIMIT, line,
                                   corvella::HOOK_LINE_SIZE);
    std::printf("CORVELLATEST%s\nENDCORVELLATEST\n", line);
    return std::fflush(stdout);
}
