#include "install/host/inetd.h"

#include <arpa/inet.h>
#include <netdb.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <optional>

#include "install/console.h"
#include "install/critical_section.h"
#include "install/host/await.h"
#include "install/host/host_file.h"
#include "install/host/probes.h"
#include "install/record/signalled.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/identity.h"

namespace {

const SString kHangUp = "kill -HUP [inetd-pid]";

void ListConflicts(const SStringList& conflicts) {
    BreakProgress();
    Tell("Your Internet Daemon (inetd) is currently configured to handle the following services:");
    PrintIndented(4, conflicts);
    Print("\n\n");
    Tell("These will need to be disabled in " + gstr_InetdConf +
         " for the mail system to be able to take over for inetd.");
}

/// The mail system cannot work while the Internet daemon holds the mail port.
void NoteShowStopper(const SStringList& conflicts) {
    if (conflicts.Contains("smtp") || conflicts.Contains("mail")) gf_ShowStoppers = 1;
}

/// Has the Internet daemon read its file again.
bool ResetInetd() {
    return KillRecorded("inetd", SIGHUP);
}

/// Whether any of the services' ports is bound.
bool AreBound(const SStringList& services) {
    const SStringList bound = ListeningPorts();
    return std::ranges::any_of(services, [&](const SString& name) {
        const servent* service = getservbyname(name.CString(), "tcp");
        return service != nullptr && bound.Contains(SString(ntohs(static_cast<uint16_t>(service->s_port))));
    });
}

/// The daemon takes a moment to close the ports, and a later step looks who holds them.
void AwaitRelease(const SStringList& services) {
    // The resolver reads it for the ports. Where it stays cut, they are just not waited for.
    FinishRewrite(gstr_ServicesFile);
    Await([&] { return !AreBound(services); });
}

void ReportNotReset(const SStringList& conflicts) {
    Tell(
        "WARNING: Couldn't reset inetd by sending it a HUP signal. "
        "You will be reminded to do this when the installation is finished.");
    Remind({kHangUp});
    NoteShowStopper(conflicts);
}

/// What a killed run has begun.
struct Finished {
    bool is_whole = false;
    std::optional<bool> is_reset;  // nothing where there was nothing to tell the daemon
};

Finished FinishTakeOver() {
    Finished finished;
    SStringList conflicts;
    finished.is_whole = FinishRewrite(gstr_InetdConf, [&](const SString& before) {
        conflicts = InetdConflicts(Lines(before));
        finished.is_reset = ResetInetd();
    });
    if (finished.is_reset == true) AwaitRelease(conflicts);
    if (finished.is_reset == false) {
        BreakProgress();
        ReportNotReset(conflicts);
    }
    return finished;
}

bool LeaveToAdministrator(const SStringList& conflicts) {
    Tell("You will be reminded to do this when the installation has been completed.");
    SStringList reminders;
    for (const SString& name : conflicts) reminders.Push("Remove from " + gstr_InetdConf + ": " + name);
    Remind(reminders);
    Remind({kHangUp});
    NoteShowStopper(conflicts);
    return AskToContinue();
}

bool DisableConflicts(const SStringList& conflicts) {
    bool is_reset = false;
    const bool is_updated = UpdateInetdConf(conflicts, [&](const SString&) { is_reset = ResetInetd(); });
    if (is_updated && !is_reset) ReportNotReset(conflicts);
    if (!is_updated) {
        Tell("WARNING: Update of " + gstr_InetdConf +
             " failed. You will have to update the configuration file manually later.");
    }
    if (CriticalSection::WasInterrupted()) return false;
    if (is_updated && is_reset) AwaitRelease(conflicts);
    return is_updated || LeaveToAdministrator(conflicts);
}

}  // namespace

SStringList ActiveServices(SStringList lines) {
    lines = lines.Grep("!/^\\s*(#|$)/");
    lines.Grep("s/^\\s+//");
    lines = lines.Grep("/\\s/");     // a blank or a line end follows an entry's name
    lines.Grep("s/\\s[\\s\\S]*//");  // the line end, too
    return lines;
}

SString InetdAlias(const SString& service) {
    if (service == "smtp") return "mail";
    return service == "pop3" ? "pop-3" : "";
}

SStringList InetdConflicts(SStringList lines) {
    const SStringList active = ActiveServices(std::move(lines));
    SStringList names = gstrl_Services;
    for (const SString& service : gstrl_Services) names.Push(InetdAlias(service));
    names.Delete("");
    SStringList conflicts;
    for (const SString& name : names) {
        if (active.Contains(name)) conflicts.Push(name);
    }
    return conflicts;
}

SStringList WithoutServices(SStringList lines, const SStringList& services) {
    lines.Grep("s/^\\s*(" + services.Join("|") + ")(\\s)/#$1$2/");
    return lines;
}

bool UpdateInetdConf(const SStringList& services, const Announcement& announce) {
    const CriticalSection section;
    const AsRoot root(static_cast<uid_t>(gn_MailUID));
    return RewriteHostFile(
        gstr_InetdConf, [&](SStringList lines) { return WithoutServices(std::move(lines), services); },
        announce);
}

bool EditInetdConf() {
    BeginProgress("Checking inetd configuration");
    const Finished finished = FinishTakeOver();
    const std::optional<SStringList> lines = finished.is_whole ? ReadHostFile(gstr_InetdConf) : std::nullopt;
    if (CriticalSection::WasInterrupted()) return false;
    if (!lines) {
        BreakProgress();
        Tell("WARNING: Couldn't open " + gstr_InetdConf);
        return true;
    }
    const SStringList conflicts = InetdConflicts(*lines);
    if (conflicts.IsEmpty()) {
        if (finished.is_reset != false) EndProgress("OK");
        return true;
    }
    ListConflicts(conflicts);
    const char answer = Ask(QuestionId::EditInetd);
    if (answer == 'q') return false;
    if (answer == 'y') return DisableConflicts(conflicts);
    Print("\n");
    return LeaveToAdministrator(conflicts);
}
