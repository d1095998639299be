// Reads a command line: options_loop [-v] [-o FILE] [--level=N] [ARGUMENT]...
#include "support/error.h"
#include "support/options.h"

int main(int count, char **vector)
{
    const long_option table[] = {
        {"verbose", 0, nullptr, 'v'},
        {"output", 1, nullptr, 'o'},
        {"level", 1, nullptr, 'l'},
        {nullptr, 0, nullptr, 0},
    };
    set_print_stream(stdout);
    int code;
    while ((code = get_long_options(count, vector, "vo:l:", table, nullptr)) != -1) {
        switch (code) {
        case 'v':
            print_indented("verbose\n");
            break;
        case 'o':
            print_indented("output to %s\n", option_argument);
            break;
        case 'l':
            print_indented("level %s\n", option_argument);
            break;
        default: // the parser has said why
            return 2;
        }
    }
    for (; option_index < count; ++option_index) {
        print_indented("operand %s\n", vector[option_index]);
    }
    return 0;
}
