// Starting a child process: the only place that forks.
#pragma once

#include <sys/types.h>

#include <functional>

/// Runs the work in a child, which ends when it returns, with status 0 and without this process's exit
/// handlers. The process's id; -1 if fork failed five times within 15 seconds.
pid_t StartChild(const std::function<void()>& work);
