// The steps of the installation. Each returns true to go on; a step that returns false has printed why. Work
// that is left undone goes to gstrl_Reminders.
#pragma once

bool Initialize();            // initialize.cc: the host's files and services
bool CreateMailboxDir();      // mail_directories.cc
bool UpdateConfiguration();   // module_databases.cc
bool FixMaildropDir();        // mail_directories.cc
bool SetupSpecialAccounts();  // special_accounts.cc
int AddUserAccounts();        // user_accounts.cc
bool SetupAdminAccount();     // postmaster.cc
bool ConfigureFeatures();     // remote_configuration.cc
bool EditInetdConf();         // inetd.cc
bool KillSendmail();          // sendmail.cc
bool InstallSendmail();       // sendmail.cc
bool KillServers();           // competing_servers.cc
bool StartDaemon();           // start.cc
bool WarnAdmin();             // closing_screen.cc
bool AddServices();           // services.cc; callable, not in the sequence

/// Runs the introduction and the sequence; true when every step returned true. (sequence.cc)
bool FullInstall();
