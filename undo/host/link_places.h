// What stands by now where a link was made, where its backup is, and under the name that Undo uses beside it.
#pragma once

#include "install/record/change.h"
#include "support/system/trusted_path.h"

enum class Stands {
    Nothing,
    Link,       // the one that the run made
    Before,     // the program or the dangling link from before the run
    Somebodys,  // anything else
};

/// The paths keep to the directory that is held.
struct LinkPlaces {
    std::optional<TrustedPlace> held;  // nothing, with errno, where it was not reached
    std::optional<TrustedPlace> held_backup;
    SString path;
    SString backup;  // empty where there is none
    SString spare;   // of the dangling link that is being made, or what Undo has taken away to look at it
    Stands at_path = Stands::Nothing;
    Stands at_backup = Stands::Nothing;
    Stands at_spare = Stands::Nothing;
    bool is_twice = false;  // path and backup are one file: a rename that was cut short
};

LinkPlaces FindLinkPlaces(const change::LinkMade& change);
/// The spare name beside the path.
SString SpareName(const SString& path);
