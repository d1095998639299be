/// \file
/// What line a message of each level makes, for the tests of all that form one.
#pragma once

#include <climits>

struct LineCase {
    int level;
    const char *text;
    const char *line;
};

// clang-format off
inline constexpr LineCase line_cases[] = {
    {0, "disk", "Log: disk"},
    {1, "disk", "disk"},
    {2, "disk", "Info: disk"},
    {3, "disk", "Note: disk"},
    {4, "disk", "Info: disk\x07"},
    {5, "disk", "Note: disk\x07"},
    {6, "disk", "\x07" "disk"},
    {7, "disk", "Alert: disk\x07"},
    {8, "disk", "Warning: disk\x07"},
    {9, "disk", "Error: disk\x07"},
    {10, "disk", "Fatal Error: disk\x07"},
    {-1, "disk", "Warning: disk\x07"},
    {11, "disk", "Warning: disk\x07"},
    {255, "disk", "Warning: disk\x07"},
    {266, "disk", "Warning: disk\x07"},
    {INT_MIN, "disk", "Warning: disk\x07"},
    {INT_MAX, "disk", "Warning: disk\x07"},
    {1, "", ""},
    {2, "", "Info: "},
    {6, "", "\x07"},
    {9, "", "Error: \x07"},
    {2, "\n", "Info: "},
    {2, "disk\n", "Info: disk"},
    {2, "disk\n\n\n", "Info: disk"},
    {2, "a\nb\n", "Info: a\nb"},
    {2, "\n\na", "Info: \n\na"},
    {2, "disk\r\n", "Info: disk\r"},
    {2, "disk\n\r", "Info: disk\n\r"},
    {2, "disk\n\r\n", "Info: disk\n\r"},
    {2, "disk \n", "Info: disk "},
    {2, "%s %n %%", "Info: %s %n %%"},
    {2, "\x80\xff", "Info: \x80\xff"},
    {9, "\n\n\n", "Error: \x07"},
    {9, "a\nb\n\n", "Error: a\nb\x07"},
    {9, "disk\r\n", "Error: disk\r\x07"},
    {9, "disk\n\r", "Error: disk\n\r\x07"},
    {9, "%n%s%d", "Error: %n%s%d\x07"},
    {9, "\x80\xff", "Error: \x80\xff\x07"},
};
// clang-format on
