// Prints a list that is made of the program's tables: "corvella_lists KIND", at build time.
#include <cstdio>
#include <cstring>

#include "tool/generate/lists.h"

namespace corvella {

namespace {

struct list_kind {
    const char *name;
    std::string (*text)();
};

constexpr list_kind kinds[] = {
    {"manual", manual_lists},
    {"bash", bash_completion},
    {"zsh", zsh_completion},
};

} // namespace

} // namespace corvella

int main(int count, char **vector)
{
    for (const corvella::list_kind &kind : corvella::kinds) {
        if (count == 2 && std::strcmp(kind.name, vector[1]) == 0) {
            const bool written = std::fputs(kind.text().c_str(), stdout) != EOF;
            return written && std::fflush(stdout) == 0 ? 0 : 1;
        }
    }
    std::fputs("Usage: corvella_lists manual|bash|zsh\n", stderr);
    return 2;
}
