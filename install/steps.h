// The steps of the installation. Each returns true to go on; a step that returns false has printed why. Work
// that is left undone goes to gstrl_Reminders.
#pragma once

bool Initialize();            // initialize.cc: the host's files and services
bool CreateMailboxDir();      // host/mail_directories.cc
bool UpdateConfiguration();   // mail_system/module_databases.cc
bool FixMaildropDir();        // host/mail_directories.cc
bool SetupSpecialAccounts();  // accounts/special_accounts.cc
int AddUserAccounts();        // accounts/user_accounts.cc
bool SetupAdminAccount();     // postmaster/postmaster.cc
bool ConfigureFeatures();     // mail_system/remote_configuration.cc
bool EditInetdConf();         // host/inetd.cc
bool KillSendmail();          // host/sendmail.cc
bool InstallSendmail();       // host/sendmail.cc
bool KillServers();           // host/competing_servers.cc
bool StartDaemon();           // mail_system/start_mail_system.cc
bool WarnAdmin();             // mail_system/closing_screen.cc
bool AddServices();           // host/services.cc; prescribed as callable, not in the sequence

/// Runs the introduction and the sequence; true when every step returned true. (sequence.cc)
bool FullInstall();
