// What frees a mail port of the process that holds it.
#pragma once

#include <vector>

#include "support/process/listeners.h"

struct Holder {
    SString service;  // "smtp"
    SString port;
    Listener listener;
};

/// "; 3 processes have this name", which the answer would end all; empty for one.
SString Namesakes(const SString& name);
/// What Install leaves to the administrator.
SStringList ToFree(const Holder& holder);
/// The answers by which Install frees it. "Which processes?" is asked once: it names all of the holders.
SStringList ToAnswer(const Holder& holder, const std::vector<Holder>& all);
