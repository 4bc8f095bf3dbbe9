// What is found of the host's maildrop directory.
#pragma once

#include <sys/types.h>

struct MaildropDirectory {
    /// NoSetgid: the setgid bit or the group's execute bit is missing.
    enum class State { Missing, Unknown, NoSetgid, Right };
    State state = State::Missing;
    mode_t mode = 0;  // its permissions, where they are known
};

/// As the mail owner, who has to find it, and root, who has to be told its mode.
MaildropDirectory LookAtMaildropDirectory();
