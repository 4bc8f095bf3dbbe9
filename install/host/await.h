// Waiting for what a signalled process does in its own time.
#pragma once

#include <functional>

/// Looks every tenth of a second whether it is so, for five seconds at most.
void Await(const std::function<bool()>& is_so);
