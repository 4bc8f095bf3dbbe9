// The servers that a signal stopped, as the administrator is told of them: each once, of many processes, too.
#pragma once

#include "undo/way_back.h"

struct StoppedServers {
    SStringList units;
    SStringList by_hand;  // what the others are, with the command line that they themselves chose: never run
};

/// Those that are not running again, given the names of what runs and what tells a unit that is active.
StoppedServers StoppedServersOf(const change::ProcessesSignalled& change, const SStringList& running,
                                bool (*is_active)(const SString& unit));
