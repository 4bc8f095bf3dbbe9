// The site's facts, one after the other as Install's start-up finds them, without ending at the first that is
// missing.
#include <unistd.h>

#include "check/looks.h"
#include "install/settings.h"
#include "install/site.h"
#include "support/system/identity.h"

namespace {

void ReportConfiguration(SiteFault fault, Findings* findings) {
    if (fault == SiteFault::NoConfiguration) {
        findings->Problem("configuration", gstr_ConfigFile + " is missing",
                          "install the package tern.harbor-install or, where it is installed, run: "
                          "dpkg-reconfigure tern.harbor-install");
    } else if (fault == SiteFault::Unreadable) {
        findings->NotLookedAt("configuration", gstr_ConfigFile + " cannot be read");
    } else {
        findings->Problem("configuration", gstr_ConfigFile + " has no value for " + MissingKeys().Join(", "),
                          "add a line KEY=VALUE, without blanks around the equals sign, for each of them; "
                          "only the first line that begins with a key counts");
    }
}

void ReportMissing(SiteFault fault, Findings* findings) {
    switch (fault) {
        case SiteFault::NoHostName:
            findings->Problem("host-name", "the host has no name", "hostnamectl set-hostname NAME");
            return;
        case SiteFault::NoAddress:
            findings->Problem("host-name", gstr_HostName + " does not resolve to an IPv4 address",
                              "correct DomainName in " + gstr_ConfigFile + ", or name " + gstr_HostName +
                                  " with the host's address in /etc/hosts");
            return;
        case SiteFault::NoOwner:
            findings->Problem("mail-owner", "the mail owner " + gstr_MailOwner + " is no login",
                              "dpkg-reconfigure tern.harbor-install");
            return;
        case SiteFault::NoGroup:
            findings->Problem("mail-owner", "the mail owner's group " + SString(gn_MailGID) + " has no name",
                              "groupadd -g " + SString(gn_MailGID) + " " + gstr_MailOwner);
            return;
        default:
            ReportConfiguration(fault, findings);
    }
}

/// Where one of them is missing, so is all that follows.
bool EndsTheLook(SiteFault fault) {
    return fault != SiteFault::NoAddress;
}

void ReportAddress(Findings* findings) {
    if (gstr_IpAddress.StartsWith("[127.")) {
        findings->Problem("host-name", gstr_HostName + " resolves to the loopback address " + gstr_IpAddress,
                          "give the name its real address in /etc/hosts before the first run");
    } else {
        findings->Ok("host-name", gstr_HostName + " resolves to " + gstr_IpAddress);
    }
}

/// What Install works as, and looks as.
Known TakeOnOwner(Findings* findings) {
    const auto uid = static_cast<uid_t>(gn_MailUID);
    if (getuid() == 0 && !BecomeMailOwner(gstr_MailOwner, uid, static_cast<gid_t>(gn_MailGID))) {
        findings->Problem("mail-owner", "the rights of " + gstr_MailOwner + " could not be taken on",
                          "run Check and Install outside of what confines them (setpriv --dump shows it)");
        return Known::Configuration;
    }
    findings->Ok("mail-owner",
                 "the mail system's owner is " + gstr_MailOwner + " in the group " + gstr_MailGroup);
    return Known::Owner;
}

}  // namespace

Known LookAtSite(Findings* findings) {
    Known known = Known::Nothing;
    bool has_address = true;
    for (const SiteFact& fact : SiteFacts()) {
        const bool is_found = fact.find();
        if (!is_found) ReportMissing(fact.fault, findings);
        if (!is_found && EndsTheLook(fact.fault)) return known;
        if (fact.fault == SiteFault::NoAddress) has_address = is_found;
        if (fact.fault != SiteFault::Incomplete) continue;
        findings->Ok("configuration", gstr_ConfigFile + " is whole");
        if (has_address) ReportAddress(findings);
        known = Known::Configuration;
    }
    return TakeOnOwner(findings);
}
