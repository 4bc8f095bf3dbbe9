// The logins that would get accounts, by either method of the account step.
#include <algorithm>
#include <vector>

#include "check/looks.h"
#include "install/accounts/candidates.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/text/counted.h"

namespace {

constexpr uid_t kFirstOrdinary = 1000;  // where /etc/login.defs has none

uid_t FirstOrdinaryId() {
    SStringList lines = Lines(MapFileRead("/etc/login.defs"));
    const SString id = lines.Grep("s/^UID_MIN\\s+(\\d+)\\s*$/$1/").Get(0);
    return id.IsEmpty() ? kFirstOrdinary : static_cast<uid_t>(id.ToNumber());
}

bool IsSystems(const PasswordEntry& entry, uid_t first_ordinary) {
    return entry.uid < first_ordinary || entry.shell.Matches("/(?:nologin|false)$");
}

std::vector<PasswordEntry> Candidates(PasswordEntries* entries) {
    std::vector<PasswordEntry> candidates;
    while (auto entry = entries->Next()) {
        if (ReasonToSkip(*entry) == nullptr) candidates.push_back(std::move(*entry));
    }
    return candidates;
}

SStringList SystemLogins(const std::vector<PasswordEntry>& candidates) {
    const uid_t first_ordinary = FirstOrdinaryId();
    SStringList logins;
    for (const PasswordEntry& entry : candidates) {
        if (IsSystems(entry, first_ordinary)) logins.Push(entry.login);
    }
    return logins;
}

void LookAtPasswordFile(Findings* findings) {
    PasswordEntries entries(gstr_PasswdFile);
    const auto candidates = Candidates(&entries);
    if (!entries.IsOpen() || entries.HasFailed()) {
        return findings->Problem("logins", gstr_PasswdFile + " cannot be read");
    }
    const SStringList systems = SystemLogins(candidates);
    findings->Ok("logins", "can get accounts by the method p: " + Counted(candidates.size(), "login") +
                               " of " + gstr_PasswdFile);
    if (systems.IsEmpty()) return;
    findings->Note("logins",
                   "of these, " + SString(systems.Count()) + " of the system's: " + FirstOf(systems));
}

/// What the name service has beyond /etc/passwd.
SStringList OtherSources() {
    SStringList lines = Lines(MapFileRead("/etc/nsswitch.conf"));
    SStringList sources = lines.Grep("s/^\\s*passwd:\\s*([^#\\n]*).*$/$1/").Get(0).ChopLineEnd().Split(' ');
    for (const char* own : {"files", "compat", "systemd"}) sources.Delete(own);
    return sources.Grep("/^\\w/");
}

void LookAtNameService(Findings* findings) {
    const SStringList sources = OtherSources();
    if (sources.IsEmpty()) return;
    PasswordEntries all;
    PasswordEntries file(gstr_PasswdFile);
    const size_t in_all = Candidates(&all).size();
    const bool has_more = in_all > Candidates(&file).size();
    const SString names = sources.Join(", ");
    if (has_more) {
        findings->Ok("logins", "can get accounts by the method a: " + Counted(in_all, "login") +
                                   " of files and " + names);
    } else {
        findings->Note("logins", "the name service has " + names + ", but does not enumerate logins of it",
                       "make their accounts by the mail system's own administration, or let the source "
                       "enumerate (SSSD: enumerate = true)");
    }
}

}  // namespace

void LookAtLogins(Findings* findings) {
    if (!MailGroup()) {
        findings->Problem("logins", "there is no group mail, nor staff, to own users' maildrops",
                          "groupadd -r mail");
    }
    LookAtPasswordFile(findings);
    LookAtNameService(findings);
}
