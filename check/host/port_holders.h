// What frees a mail port of the process that holds it.
#pragma once

#include <vector>

#include "support/process/listeners.h"

/// The step in which Install frees the port, if it is answered so.
enum class FreedBy { Nothing, EditInetd, KillSendmail, KillServers };

struct Holder {
    SString port;
    Listener listener;
    FreedBy freed_by;
};

/// While the mail system runs, Install asks for no processes to kill.
FreedBy StepThatFrees(const SString& service, const Listener& listener, bool is_mail_system_running);

/// "; 3 processes have this name", which the answer would end all; empty for one.
SString Namesakes(const SString& name);
/// What Install leaves to the administrator.
SStringList ToFree(const Holder& holder);
/// The answers by which Install frees it. "Which processes?" is asked once: it names all of the holders.
SStringList ToAnswer(const Holder& holder, const std::vector<Holder>& all);
