#include "install/site.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdint>

#include "install/read_config.h"
#include "install/settings.h"
#include "install/site_faults.h"
#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/host.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

namespace {

bool ConfigurationExists() {
    return FileExists(gstr_ConfigFile);
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
    if (!text) return false;
    SStringList lines = Lines(*text);
    for (SString& line : lines) line.ChopLineEnd();
    TakeConfiguration(lines);
    return true;
}

bool FindHostName() {
    const SString node_name = NodeName();
    if (node_name.IsEmpty()) return false;
    gstr_HostName = FullHostName(node_name, gstr_DomainName);
    return true;
}

bool FindAddress() {
    const SStringList addresses = GetHostByName(gstr_HostName);
    gstr_IpAddress = "[" + addresses.Get(0) + "]";
    // Without a domain the name cannot resolve; the check for missing values has the better message.
    return !addresses.Get(0).IsEmpty() || gstr_DomainName.IsEmpty();
}

void ExportSite() {
    PutEnv("DomainName", gstr_DomainName);
    PutEnv("HostName", gstr_HostName);
    PutEnv("MailboxDir", gstr_MailboxDir);
    PutEnv("ModuleName", "Install");
    PutEnv("TernHarbor", gstr_TernHarbor);
    PutEnv("ProgramDir", gstr_ProgramDir);
}

bool TakeWholeConfiguration() {
    ExportSite();
    if (!MissingKeys().IsEmpty()) return false;
    gstr_TernHarbor += '/';
    gstr_ProgramDir += '/';
    gstr_MailboxDir += '/';
    return true;
}

bool FindOwner() {
    const passwd* owner = getpwnam(gstr_MailOwner.CString());
    if (owner == nullptr || owner->pw_uid == kNoId) return false;
    gn_MailUID = static_cast<int32_t>(owner->pw_uid);
    gn_MailGID = static_cast<int32_t>(owner->pw_gid);
    return true;
}

bool FindGroup() {
    const auto gid = static_cast<gid_t>(gn_MailGID);
    const group* found = gid == kNoId ? nullptr : getgrgid(gid);
    if (found == nullptr) return false;
    gstr_MailGroup = found->gr_name;
    return true;
}

constexpr SiteFact kFacts[] = {
    {ConfigurationExists, SiteFault::NoConfiguration},
    {ReadConfiguration, SiteFault::Unreadable},
    {FindHostName, SiteFault::NoHostName},
    {FindAddress, SiteFault::NoAddress},
    {TakeWholeConfiguration, SiteFault::Incomplete},
    {FindOwner, SiteFault::NoOwner},
    {FindGroup, SiteFault::NoGroup},
};

}  // namespace

SStringList MailSystemUsers() {
    return {SString(getuid()), SString(gn_MailUID)};  // the real user is root
}

SString FullHostName(const SString& node_name, const SString& domain) {
    return node_name.S("\\..*", "") + "." + domain;
}

SStringList MissingKeys() {
    const struct {
        const char* key;
        const SString& value;
    } needed[] = {{"DomainName", gstr_DomainName},
                  {"TernHarbor", gstr_TernHarbor},
                  {"ProgramDir", gstr_ProgramDir},
                  {"MailboxDir", gstr_MailboxDir},
                  {"MailUserName", gstr_MailOwner}};
    SStringList missing;
    for (const auto& setting : needed) {
        if (setting.value.IsEmpty()) missing.Push(setting.key);
    }
    return missing;
}

std::span<const SiteFact> SiteFacts() {
    return kFacts;
}

bool DetermineSite() {
    for (const SiteFact& fact : kFacts) {
        if (fact.find()) continue;
        TellFault(fact.fault);
        return false;
    }
    return true;
}
