// Lists the regular files of a directory: directory_walk DIRECTORY
#include <cstdint>

#include "support/c-utils.h"
#include "support/error.h"

namespace {

int show(const char *path, std::intptr_t user)
{
    ++*reinterpret_cast<int *>(user);
    return print_indented("%s\n", path_base_name(path));
}

} // namespace

int main(int count, char **vector)
{
    set_print_stream(stdout);
    int files = 0;
    for_each_regular_file(count > 1 ? vector[1] : ".", show,
                          reinterpret_cast<std::intptr_t>(&files));
    print_indented("%d files\n", files);
    return 0;
}
