#include "install/host/services.h"

#include <netdb.h>

#include "install/console.h"
#include "install/critical_section.h"
#include "install/host/host_file.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/identity.h"

namespace {

constexpr size_t kNameWidth = 10;

void ListMissing(const SStringList& missing) {
    BreakProgress();
    Tell("Your services database is missing the following entries:");
    PrintIndented(4, missing);
    Print("\n");
    Tell(
        "If you use NIS or NIS+ you will need to update those databases by hand. "
        "However if you want them added to the " +
        gstr_ServicesFile + " file, that can be done automatically.");
}

bool LeaveToAdministrator(const SStringList& missing) {
    Print("\n");
    Tell("You will be reminded to do this when the installation has been completed.");
    SStringList reminders;
    for (const SString& entry : missing) reminders.Push("Add to services database:    " + entry);
    Remind(reminders);
    return AskToContinue();
}

void TellNotUpdated() {
    PrintParagraph("WARNING: Update of " + gstr_ServicesFile +
                   " failed. You will have to update the services database manually.");
}

}  // namespace

SString ServiceEntry(const SString& name, const SString& port) {
    return PaddedTo(name, kNameWidth) + " " + port + "/tcp";
}

SStringList MissingServices(SStringList names, SStringList ports) {
    SStringList missing;
    while (!names.IsEmpty()) {
        const SString name = names.Shift();
        const SString port = ports.Shift();
        if (getservbyname(name.CString(), "tcp") == nullptr) missing.Push(ServiceEntry(name, port));
    }
    return missing;
}

SStringList WithServices(SStringList lines, const SStringList& entries) {
    SStringList result;
    while (!lines.IsEmpty() && lines[0].StartsWith("#")) result.Push(lines.Shift());
    // A file that ends in a comment without its line end must not swallow the first added line.
    if (!result.IsEmpty() && !result[result.Count() - 1].EndsWith("\n")) result.Push("\n");
    result.Push({"##\n", "## Services added during installation of tern.harbor.\n",
                 "## Sorry that they aren't in order....\n", "##\n"});
    result.Push(entries.Join("\n") + "\n");
    result.Push(lines);
    return result;
}

bool UpdateServicesFile(const SStringList& entries) {
    const CriticalSection section;
    const AsRoot root(static_cast<uid_t>(gn_MailUID));
    return RewriteHostFile(gstr_ServicesFile,
                           [&](SStringList lines) { return WithServices(std::move(lines), entries); });
}

bool AddServices() {
    BeginProgress("Checking services database");
    const bool is_whole = FinishRewrite(gstr_ServicesFile);  // before the resolver reads it
    if (CriticalSection::WasInterrupted()) return false;
    const SStringList missing = MissingServices(gstrl_Services, gstrl_ServicePorts);
    if (missing.IsEmpty() && !is_whole) {
        BreakProgress();
        TellNotUpdated();
        return AskToContinue();
    }
    if (missing.IsEmpty()) {
        EndProgress("OK");
        return true;
    }
    ListMissing(missing);
    const char answer = AskAbout(QuestionId::UpdateServices, gstr_ServicesFile);
    if (answer == 'q') return false;
    if (answer == 'y') {
        const bool updated = UpdateServicesFile(missing);
        if (!updated) TellNotUpdated();
        if (CriticalSection::WasInterrupted()) return false;
        if (updated) return true;
    }
    return LeaveToAdministrator(missing);
}
