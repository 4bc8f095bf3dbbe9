// What a request to end the program does: at once, or, inside a critical section, after it.
#pragma once

/// Takes SIGHUP, SIGINT, SIGQUIT and SIGTERM, also where the parent process had them blocked.
void SetupSignalHandler();
/// Ends the program with status 3 while gf_OkToBeKilled is set. Otherwise asks for patience and sets
/// gf_Killed.
void SignalHandler(int signal);
