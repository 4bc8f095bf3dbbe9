// Work that may never come back, done by a child process that is given up: a look at a file server that is
// gone, a command that hangs. Not even SIGKILL ends such a wait, so the child is left to the kernel.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "support/text/sstring_list.h"

/// What the work returns; nothing if it takes longer, or if there is no process for it. What it starts ends
/// with it. The work has no terminal, and changes nothing in this process.
std::optional<SStringList> ResultWithin(std::chrono::milliseconds patience,
                                        const std::function<SStringList()>& work);
