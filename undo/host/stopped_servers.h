// The servers that a signal stopped, as the administrator is told of them: each once, of many processes, too.
#pragma once

#include "undo/way_back.h"

struct StoppedServers {
    SStringList units;
    SStringList by_hand;  // what the others are, with the command line that they themselves chose: never run
};

/// A process, by the real user whose choice its name and its command line are.
struct Runner {
    int64_t id = 0;
    SString name;
    uid_t user = 0;
    SStringList command = {};
};

/// Those that are not running again, given what runs and what tells a unit that is active. A process of that
/// name counts where it is root's or the same user's, as any login could have one, and where it has the
/// command line of one of that name, if that is known: many servers are "python3". Of those that were
/// signalled only the very one counts: where Install was killed in between, the others still run.
StoppedServers StoppedServersOf(const change::ProcessesSignalled& change, const std::vector<Runner>& running,
                                bool (*is_active)(const SString& unit));
