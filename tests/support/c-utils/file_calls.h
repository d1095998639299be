/// \file
/// The file calls of a test program, which the linker's option --wrap routes through here, so that
/// each can be made to fail and be counted.
#pragma once

#include <dirent.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

/// What the calls do while they are scripted. None of them touches a file then.
struct FileCalls {
    bool active = false;
    std::vector<std::string> failing{}; ///< names of the calls that fail
    int error = 0;                      ///< the errno that they leave

    mode_t mode = S_IFREG; ///< what stat and lstat find
    /// What they find instead at some paths; 0 for a failure.
    std::map<std::string, mode_t> modes{};
    std::vector<dirent> entries{}; ///< what readdir returns
    std::size_t next_entry = 0;
    bool clock_changes_errno = false; ///< time() leaves another errno

    std::vector<std::string> calls{}; ///< name and arguments of each, in order
    int narrow_calls = 0;             ///< calls that know no files of 2 GiB and more
};
extern FileCalls file_calls;
