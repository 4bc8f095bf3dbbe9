#include "install/site.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdint>

#include "install/console.h"
#include "install/read_config.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/host.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

namespace {

/// The problem and what to do about it.
bool Fail(const SString& problem, const SString& advice) {
    Tell(problem);
    PrintParagraph(advice);
    return false;
}

bool ConfigurationExists() {
    if (FileExists(gstr_ConfigFile)) return true;
    return Fail("The system configuration file (" + gstr_ConfigFile +
                    ") doesn't exist. This file should have been created by the package installation program "
                    "(pkgadd). If you haven't run pkgadd, you must do that before running this program.",
                "If you have run pkgadd then there is a problem. " + SupportLine());
}

void TakeConfiguration(const SStringList& lines) {
    gstr_DomainName = ReadConfig(lines, "DomainName");
    gstr_TernHarbor = ReadConfig(lines, "TernHarbor");
    gstr_ProgramDir = ReadConfig(lines, "ProgramDir");
    gstr_MailboxDir = ReadConfig(lines, "MailboxDir");
    gstr_MailOwner = ReadConfig(lines, "MailUserName");
    gstrl_BadUsers.Push(gstr_MailOwner);
}

bool ReadConfiguration() {
    // O_NONBLOCK: it might be a FIFO without a writer.
    const auto file = Descriptor::Open(gstr_ConfigFile, O_RDONLY | O_NONBLOCK);
    const auto text = file ? file.ReadAll() : std::nullopt;
    if (!text) {
        PrintParagraph("Couldn't open " + gstr_ConfigFile + ". " + SupportLine());
        return false;
    }
    SStringList lines = Lines(*text);
    for (SString& line : lines) line.ChopLineEnd();
    TakeConfiguration(lines);
    return true;
}

bool FindHostName() {
    const SString node_name = NodeName();
    if (node_name.IsEmpty()) {
        PrintParagraph("Couldn't determine your system's hostname using the uname(2) system call. " +
                       SupportLine());
        return false;
    }
    gstr_HostName = FullHostName(node_name, gstr_DomainName);
    return true;
}

bool FindAddress() {
    const SStringList addresses = GetHostByName(gstr_HostName);
    gstr_IpAddress = "[" + addresses.Get(0) + "]";
    // Without a domain the name cannot resolve; the check for missing values has the better message.
    if (!addresses.Get(0).IsEmpty() || gstr_DomainName.IsEmpty()) return true;
    return Fail("Couldn't determine the IP address of " + gstr_HostName +
                    " using the gethostbyname function. If your domain name is incorrect, correct it in " +
                    gstr_ConfigFile + ".",
                SupportLine());
}

bool ExportSite() {
    PutEnv("DomainName", gstr_DomainName);
    PutEnv("HostName", gstr_HostName);
    PutEnv("MailboxDir", gstr_MailboxDir);
    PutEnv("ModuleName", "Install");
    PutEnv("TernHarbor", gstr_TernHarbor);
    PutEnv("ProgramDir", gstr_ProgramDir);
    return true;
}

bool IsComplete() {
    const SStringList needed{gstr_DomainName, gstr_TernHarbor, gstr_ProgramDir, gstr_MailboxDir,
                             gstr_MailOwner};
    if (!needed.Contains("")) return true;
    return Fail("The configuration file (" + gstr_ConfigFile +
                    ") is missing information necessary for correct operation of the mail system. It should "
                    "have been set up by the package installation program (pkgadd).",
                SupportLine());
}

bool CloseDirectoryNames() {
    gstr_TernHarbor += '/';
    gstr_ProgramDir += '/';
    gstr_MailboxDir += '/';
    return true;
}

bool FindOwner() {
    const passwd* owner = getpwnam(gstr_MailOwner.CString());
    if (owner != nullptr && owner->pw_uid != kNoId) {
        gn_MailUID = static_cast<int32_t>(owner->pw_uid);
        gn_MailGID = static_cast<int32_t>(owner->pw_gid);
        return true;
    }
    return Fail("The user ID specified as the owner of the mail system (" + gstr_MailOwner +
                    ") is not in the password database. Please create the user and run this program again.",
                "If the user is already in the password database then there is a problem. " + SupportLine());
}

bool FindGroup() {
    const auto gid = static_cast<gid_t>(gn_MailGID);
    const group* found = gid == kNoId ? nullptr : getgrgid(gid);
    if (found != nullptr) {
        gstr_MailGroup = found->gr_name;
        return true;
    }
    return Fail("The group ID specified as the primary group of the mail system (" + SString(gid) +
                    ") is not in the group database. Please create the group and run this program again.",
                "If the group is already in the database then there is a problem. " + SupportLine());
}

}  // namespace

SStringList MailSystemUsers() {
    return {SString(getuid()), SString(gn_MailUID)};  // the real user is root
}

SString FullHostName(const SString& node_name, const SString& domain) {
    return node_name.S("\\..*", "") + "." + domain;
}

bool DetermineSite() {
    return ConfigurationExists() && ReadConfiguration() && FindHostName() && FindAddress() && ExportSite() &&
           IsComplete() && CloseDirectoryNames() && FindOwner() && FindGroup();
}
