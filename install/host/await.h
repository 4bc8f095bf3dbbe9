// Waiting for a process to react to a signal.
#pragma once

#include <functional>

/// Polls the condition every tenth of a second, for five seconds at most.
void Await(const std::function<bool()>& is_so);
