// What came of taking something back at a user's.
#pragma once

enum class UsersOutcome {
    NotVisited,  // it did not answer
    Nothing,     // there is nothing of the run's
    Back,
    BackWithoutSetId,  // of a maildrop: its set-user-ID and set-group-ID bits stay off
    Changed,           // somebody's work by now
    ThirdLogins,       // belonged to neither root nor its user: not given back
    Replaced,          // the same, and empty; another file has taken its place
    Failed,            // refused by the system
};
