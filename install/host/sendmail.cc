#include "install/host/sendmail.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "install/console.h"
#include "install/critical_section.h"
#include "install/host/await.h"
#include "install/host/probes.h"
#include "install/record/record.h"
#include "install/record/signalled.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/process/process.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/text/printable.h"

namespace {

constexpr size_t kLongestListing = 20;
constexpr size_t kLinesShown = 15;

const SString kSendmail = "/usr/lib/sendmail";

void RemindOfDaemon() {
    Tell("You will be reminded to do this when the installation has been completed.");
    Remind({"Shutdown sendmail daemon process"});
    gf_ShowStoppers = 1;
}

bool Signal(const SStringList& processes, int signal) {
    const AsRoot root;
    return SignalProcesses(processes, signal);
}

void Kill(const SStringList& found) {
    SStringList processes = StillRunning(found);  // the administrator may have taken long to answer
    if (IsRecording()) {
        RecordSignal(processes, SIGTERM);
        processes = StillRunning(processes);  // and the disk to take the record
    }
    if (Signal(processes, SIGTERM)) {
        // The mail port is free only when they have ended. Signal 0 only asks.
        Await([&] { return !Signal(processes, 0); });
        Print("Sendmail killed successfully.\n\n");
        return;
    }
    Print("Unable to kill sendmail.\n\n");
    RemindOfDaemon();
}

void ShowQueue(const SStringList& listing) {
    BreakProgress();
    Tell(
        "Your current 'sendmail' needs to be replaced with a sendmail emulation program. However sendmail's "
        "queue is not empty. Here is the output of the 'mailq' command:");
    for (const SString& line : CutListing(listing)) Print(Printable(line, "\t\n"));
    Print("\n");
    Tell(
        "You should have sendmail deliver its queued messages before continuing with this installation "
        "or the messages will never be delivered!");
}

void TellHowToDeliver() {
    Tell(
        {"Try 'sendmail -q' to deliver the queue. This may take a long time, so you may want to check "
         "sendmail's progress periodically with the 'mailq' command. "
         "When the queue is empty, run this program again.",
         "Note: you may have to run 'sendmail -q' several times to completely empty the queue."});
}

/// Whether the queue is empty or the administrator gives its messages up.
bool MayAbandonQueue() {
    const SStringList listing = MailQueueListing();
    if (IsEmptyQueue(listing)) return true;
    ShowQueue(listing);
    const char answer = Ask(QuestionId::DeliverQueue);
    if (answer == 'y') TellHowToDeliver();
    return answer == 'n';
}

/// Prescribed: the two warnings differ in their first letter, and no empty entry follows the reminder.
void ReportLink(bool made, const SString& couldnt, const SString& link) {
    if (made) {
        EndProgress("done");
        return;
    }
    BreakProgress();
    Tell("WARNING: " + couldnt + " create a symbolic link from " + kSendmail + " to '" + link + "'");
    gstrl_Reminders.Push("Create link: 'ln -s " + ShellWord(link) + " " + kSendmail + "'");
}

bool IsLink(const SString& path) {
    struct stat status {};
    return lstat(path.CString(), &status) == 0 && S_ISLNK(status.st_mode);
}

change::LinkMade InsteadOfLink(const SString& path, const SString& link) {
    struct stat status {};
    lstat(path.CString(), &status);
    return {path, link, "", "", LinkText(path), status.st_uid, status.st_gid};
}

bool IsMissingForRoot(const SString& path) {
    const AsRoot root;
    return IsMissing(path);
}

}  // namespace

SStringList SendmailProcesses(SStringList entries) {
    return entries.Grep("/sendmail$/");
}

SString EmulatorLink(const SString& program_dir) {
    return "../.." + program_dir + "bin/sendmail";
}

bool LeadsTo(const SString& path, const SString& emulator) {
    const AsRoot root;
    const SString real = RealPath(path);
    return !real.IsEmpty() && real == RealPath(emulator);
}

bool IsEmptyQueue(const SStringList& listing) {
    if (listing.Count() < 2) return true;
    return listing.Count() == 2 && listing[0].Matches("is empty\\s*$") &&
           listing[1].Matches("^\\s*Total requests: 0\\s*$");
}

SStringList CutListing(SStringList listing) {
    const size_t count = listing.Count();
    if (count <= kLongestListing) return listing;
    listing.Splice(static_cast<int>(kLinesShown), static_cast<int>(count - kLinesShown));
    listing.Push({"\n", "[" + SString(count - kLinesShown) + " more lines deleted]\n"});
    return listing;
}

bool MakeLink(const SString& path, const SString& link) {
    const AsRoot root;
    const bool is_link = IsLink(path);
    RecordChange(is_link ? InsteadOfLink(path, link) : change::LinkMade{path, link});
    if (is_link) RemoveFile(path);
    return symlink(link.CString(), path.CString()) == 0;
}

bool ReplaceByLink(const SString& path, const SString& link) {
    const AsRoot root;
    const SString backup = FreeName(path + ".bak");
    if (IsRecording()) RecordChange(change::LinkMade{path, link, backup, ChecksumAt(path)});
    return RenameNoReplace(path, backup) && symlink(link.CString(), path.CString()) == 0;
}

bool KillSendmail() {
    BeginProgress("Checking for sendmail daemon");
    const SStringList processes = SendmailProcesses(RunningProcesses());
    if (processes.IsEmpty()) {
        EndProgress("not found (that's good)");
        return true;
    }
    EndProgress("found\n");
    Tell(
        "Sendmail needs to be shutdown for tern.harbor to have access to the mail port. "
        "Do you want the server killed now?");
    const char answer = Ask(QuestionId::KillSendmail);
    if (answer == 'q') return false;
    if (answer == 'y') {
        Kill(processes);
    } else {
        RemindOfDaemon();
    }
    return true;
}

bool InstallSendmail() {
    const SString link = EmulatorLink(gstr_ProgramDir);
    BeginProgress("Installing sendmail emulator");
    if (IsMissingForRoot(gstr_Sendmail)) {
        const bool made = Uninterrupted([&] { return MakeLink(gstr_Sendmail, link); });
        ReportLink(made, "couldn't", link);
    } else if (LeadsTo(gstr_Sendmail, gstr_ProgramDir + "bin/sendmail")) {
        EndProgress("done");
    } else if (MayAbandonQueue()) {
        // Between rename and link the host has no sendmail. The fixed path is prescribed.
        const bool made = Uninterrupted([&] { return ReplaceByLink(kSendmail, link); });
        ReportLink(made, "Couldn't", link);
    } else {
        return false;
    }
    return !CriticalSection::WasInterrupted();
}
