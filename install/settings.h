// The program-wide settings, each with its meaning, default, setter and readers, and the shared constants.
// Steps talk to each other only through these and the mail system's files.
#pragma once

#include <csignal>
#include <cstdint>

#include "support/text/sstring_list.h"

// --- constants
extern const SString gstr_ConfigFile;      // "/etc/tern.harbor.conf"
extern const SString gstr_LockFile;        // "/run/tern.harbor-install.lock"; held while a copy runs
extern const SString gstr_ProductName;     // "tern.harbor"
extern const SString gstr_SupportAddress;  // "support@ardenvale.example"
extern const SString gstr_SupportPhone;    // "+1 555 0100"
extern const SString gstr_ContactAddress;  // "info@ardenvale.example"
extern const char* const gppz_BadUsers[];  // system logins of several Unix vendors, null-terminated

// --- the site, set by start-up (site.cc)
extern SString gstr_HostName;    // fully qualified host name
extern SString gstr_IpAddress;   // the host's first IP address in square brackets
extern SString gstr_DomainName;  // configuration key "DomainName"
extern SString gstr_TernHarbor;  // "TernHarbor": the data directory; ends in "/"
extern SString gstr_ProgramDir;  // "ProgramDir": the programs' directory; ends in "/"
extern SString gstr_MailboxDir;  // "MailboxDir": the mailboxes' directory; ends in "/"
extern SString gstr_MailOwner;   // "MailUserName": the login that owns the mail system
extern SString gstr_MailGroup;   // name of its primary group
extern int32_t gn_MailUID;       // its user id
extern int32_t gn_MailGID;       // its primary group's id

// --- the host's files and services, set by Initialize
extern SString gstr_Runs;               // "/var/lib/tern.harbor-install/runs": the records of runs
extern SString gstr_PasswdFile;         // "/etc/passwd"
extern SString gstr_InetdConf;          // "/etc/inetd.conf", links resolved
extern SString gstr_ServicesFile;       // "/etc/services", links resolved
extern SString gstr_MaildropDir;        // "/var/spool/mail/"
extern SString gstr_Sendmail;           // "/usr/lib/sendmail"
extern SString gstr_SendmailCF;         // "/etc/sendmail.cf"
extern SStringList gstrl_Services;      // "smtp", "pop3", "finger"
extern SStringList gstrl_ServicePorts;  // "25", "110", "79", index for index

// --- what the steps tell each other
extern SStringList gstrl_Reminders;     // tasks left for the administrator; every step, shown by WarnAdmin
extern SStringList gstrl_BadUsers;      // gppz_BadUsers and the mail owner: never given accounts
extern int32_t gn_WWWPort;              // 80; port of the web administration, set by ConfigureFeatures
extern int32_t gf_ShowStoppers;         // 0; a problem that keeps the mail system from working is open
extern int32_t gf_TernHarborIsRunning;  // 0; processes of the mail system found by KillServers

// --- signals (signals.cc)
extern volatile std::sig_atomic_t gf_OkToBeKilled;  // 1; whether a signal may end the program at once
extern volatile std::sig_atomic_t gf_Killed;        // 0; a signal came while it might not
