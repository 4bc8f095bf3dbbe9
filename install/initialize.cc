// Sets the paths of the host's files and the services that the mail system takes over.
#include "install/record/record.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/file.h"

namespace {

/// The real path, so that a rewrite reaches the file and not a link; the path itself if there is no file.
SString Resolved(const SString& path) {
    const SString real = RealPath(path);
    return real.IsEmpty() ? path : real;
}

void AddService(const SString& name, const SString& port) {
    gstrl_Services.Push(name);
    gstrl_ServicePorts.Push(port);
}

}  // namespace

bool Initialize() {
    gstr_Runs = "/var/lib/tern.harbor-install/runs";
    NameRecord(gstr_Runs);
    gstr_PasswdFile = "/etc/passwd";
    gstr_InetdConf = Resolved("/etc/inetd.conf");
    gstr_ServicesFile = Resolved("/etc/services");
    gstr_MaildropDir = "/var/spool/mail/";
    gstr_Sendmail = "/usr/lib/sendmail";
    gstr_SendmailCF = "/etc/sendmail.cf";
    AddService("smtp", "25");
    AddService("pop3", "110");
    AddService("finger", "79");
    return true;
}
