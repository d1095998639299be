#include "support/options/bad_call.h"

namespace {

struct bad_call {
    bool known;
    int count;
    char *const *vector;
    const char *short_options;
    const long_option *long_options;
    std::int32_t errors;
};

bad_call last_bad_call = {};

bool operator==(const bad_call &a, const bad_call &b)
{
    return a.known == b.known && a.count == b.count && a.vector == b.vector &&
           a.short_options == b.short_options && a.long_options == b.long_options &&
           a.errors == b.errors;
}

} // namespace

int refuse_bad_call(int count, char *const *vector, const char *short_options,
                    const long_option *long_options)
{
    const bool described = short_options != nullptr || long_options != nullptr;
    if (count != 0 && vector != nullptr && described) {
        last_bad_call = {};
        return 0;
    }
    const bad_call call = {true, count, vector, short_options, long_options, option_errors};
    if (call == last_bad_call) {
        last_bad_call = {};
        return -1;
    }
    last_bad_call = call;
    option_code = '?';
    return option_code;
}
