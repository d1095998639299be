/// \file
/// What the system tells of a running program.
#pragma once

#include <string>
#include <sys/types.h>

#include "tests/harness/program.h"

/// The content of a file below /proc/PID; "" if it cannot be read.
std::string file_of_process(pid_t process, const char *name);
/// All memory that the process may write to, but for regions of a size that only a sanitizer makes,
/// for its own records: the stack with the arguments and the environment, the heap, the variables.
std::string writable_memory(pid_t process);
/// Lets a program come to wait for what does not come. A signal that finds it on its way there is
/// seen ten seconds later.
void let_it_wait(RunningProgram &program);
