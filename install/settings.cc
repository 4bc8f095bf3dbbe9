#include "install/settings.h"
#include "support/text/printable.h"

const SString gstr_ConfigFile = "/etc/tern.harbor.conf";
const SString gstr_LockFile = "/run/tern.harbor-install.lock";
const SString gstr_ProductName = "tern.harbor";
const SString gstr_SupportAddress = "support@ardenvale.example";
const SString gstr_SupportPhone = "+1 555 0100";
const SString gstr_ContactAddress = "info@ardenvale.example";

const char* const gppz_BadUsers[] = {
    "adm",      "audit",   "sysadm", "diag",    "auditor", "dbadmin", "rfindd",  "EZsetup", "demos",
    "OutOfBox", "4Dgifts", "bin",    "daemon",  "ftp",     "ingres",  "listen",  "lp",      "noaccess",
    "nobody",   "nuucp",   "smtp",   "sundiag", "sync",    "sys",     "sysdiag", "uucp",    nullptr};

SString gstr_HostName;
SString gstr_IpAddress;
SString gstr_DomainName;
SString gstr_TernHarbor;
SString gstr_ProgramDir;
SString gstr_MailboxDir;
SString gstr_MailOwner;
SString gstr_MailGroup;
int32_t gn_MailUID = 0;
int32_t gn_MailGID = 0;

SString gstr_Runs;
SString gstr_PasswdFile;
SString gstr_InetdConf;
SString gstr_ServicesFile;
SString gstr_MaildropDir;
SString gstr_Sendmail;
SString gstr_SendmailCF;
SStringList gstrl_Services;
SStringList gstrl_ServicePorts;

SStringList gstrl_Reminders;
SStringList gstrl_BadUsers(gppz_BadUsers);
int32_t gn_WWWPort = 80;
int32_t gf_ShowStoppers = 0;
int32_t gf_TernHarborIsRunning = 0;

volatile std::sig_atomic_t gf_OkToBeKilled = 1;
volatile std::sig_atomic_t gf_Killed = 0;
