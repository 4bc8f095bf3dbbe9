// Termination signals: they end the program at once, or after the critical section that it is in.
#pragma once

/// Handles SIGHUP, SIGINT, SIGQUIT and SIGTERM, and unblocks them in case the parent had them blocked.
void SetupSignalHandler();
/// Ends the program with status 3 while gf_OkToBeKilled is set. Otherwise asks for patience and sets
/// gf_Killed.
void SignalHandler(int signal);
