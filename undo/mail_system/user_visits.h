// Visits to users' homes and maildrops on the way back, by visitors' processes (install/visits/visitor.h):
// one that does not answer holds nobody up for longer than ten seconds.
#pragma once

#include <functional>
#include <vector>

#include "undo/mail_system/user_tasks.h"

struct Visited {
    std::vector<UsersOutcome> outcomes;  // one for each request, in their order
    SStringList silent;                  // what did not answer and was not told before, a line each
    bool is_interrupted = false;         // by a signal: some were not visited

    bool IsWhole() const;
};

/// Many requests are under way at once; those for the same place keep their order. They are made when they
/// are sent, maybe twice. The same processes serve all calls, and remember what was silent.
Visited VisitAll(size_t count, const std::function<VisitRequest(size_t)>& request);
