// What the next run will ask: the steps in their order, each by what its own look finds now. The list ends
// where the run would.
#include <unistd.h>

#include <algorithm>

#include "check/host/inetd_services.h"
#include "check/looks.h"
#include "check/mail_system/modules.h"
#include "check/mail_system/question_list.h"
#include "install/accounts/candidates.h"
#include "install/accounts/special_accounts.h"
#include "install/host/mail_directories.h"
#include "install/host/probes.h"
#include "install/host/rewrite_note.h"
#include "install/host/sendmail.h"
#include "install/mail_system/module_databases.h"
#include "install/mail_system/remote_settings.h"
#include "install/postmaster/deliveries.h"
#include "install/settings.h"
#include "support/process/listeners.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

using enum QuestionId;

void AskOfDirectories(QuestionList* list) {
    list->Add(Continue);
    list->AddPerhaps(YesNoOrQuit);
    if (!IsDirectory(gstr_MailboxDir)) {
        list->AddPerhaps(Continue, "again, where the mailbox directory cannot be made");
    }
}

bool AskOfMaildropDirectory(QuestionList* list) {
    using enum MaildropDirectory::State;
    const auto state = LookAtMaildropDirectory().state;
    if (state == NoSetgid) list->Add(SetSetgid);
    return state == NoSetgid || state == Right;
}

bool AskOfAccounts(QuestionList* list) {
    if (!MailGroup()) return false;
    const bool have_users = HasUserAccounts(MissingSpecialAccounts());
    const bool is_known = SAccountDB().Find("Postmaster") != Lookup::Failed;
    list->Add(AccountMethod, is_known ? std::optional<SString>(have_users ? "N" : "P") : std::nullopt);
    if (!have_users || !PasswordEntries(gstr_PasswdFile).IsOpen()) list->AddPerhaps(SendAccountForm);
    list->AddPerhaps(MailDomains, gstr_HostName, "");
    list->AddPerhaps(AddHostName);
    list->AddPerhaps(ConfirmDomains);
    return true;
}

/// Of a new Postmaster, who gets the mail depends on root's account, which the answers about domains make.
void AskOfNewPostmaster(QuestionList* list) {
    list->Add(PostmasterPassword);
    list->Add(AccessDomains, gstr_DomainName);
    list->Add(Postmasters, std::nullopt);
}

bool AskOfPostmaster(QuestionList* list) {
    SAccountDB accounts;
    SAccount postmaster;
    const Lookup found = accounts.Find("Postmaster", &postmaster);
    if (found == Lookup::Missing) AskOfNewPostmaster(list);
    if (found != Lookup::Found) return found == Lookup::Missing;
    const auto addresses = DeliveryAddresses(&accounts, DeliveriesOf(postmaster));
    if (!addresses) return false;
    const SString changed = "after yes to \"Do you want to change any information?\"";
    list->Add(ChangePostmaster);
    list->AddPerhaps(PostmasterPassword, changed);
    list->AddPerhaps(AccessDomains, postmaster.Get("Access-Domains").Join(","), changed);
    list->AddPerhaps(Postmasters, addresses->Join(","), changed);
    return true;
}

/// One that is missing is made, and is empty.
bool IsThere(Sdbfile* database) {
    return database->Open("/Config", 0) != 0 || database->IsMissing();
}

bool AskOfRemoteConfiguration(QuestionList* list) {
    Sdbfile www_server("WWW-Server", 0);
    Sdbfile dispatch("Dispatch", 0);
    if (!IsThere(&www_server) || !IsThere(&dispatch)) return false;
    const RemoteSettings settings = ReadRemoteSettings(www_server, dispatch).value_or(RemoteSettings());
    list->Add(ChangeRemote);
    const bool will_change = !ModulesWithNewVersion().IsEmpty();  // by databases that bring their own
    const auto unless_changed = [&](const SString& now) {
        return will_change ? std::nullopt : std::optional<SString>(now);
    };
    list->AddPerhaps(WebPort, unless_changed(SString(settings.port)), "");
    list->AddPerhaps(ConfirmPort80);
    list->AddPerhaps(ConfirmPort);
    if (!settings.access.IsEmpty() || will_change) list->AddPerhaps(RemoveAccess);
    list->AddPerhaps(AllowEmail, unless_changed(settings.by_email ? "yes" : "no"), "");
    return true;
}

bool IsCutShort() {
    const AsRoot root;
    return ReadNote(gstr_InetdConf).rewrite.has_value();
}

void AskOfInetd(const SStringList& conflicts, QuestionList* list) {
    if (IsCutShort()) {
        list->AddPerhaps(EditInetd, "where services are left once the killed run's change is finished");
    } else if (!conflicts.IsEmpty()) {
        list->Add(EditInetd);
    } else {
        return;
    }
    list->AddPerhaps(Continue, "again, where inetd keeps mail services");
}

/// As InstallSendmail goes.
void AskOfQueue(QuestionList* list) {
    {
        const AsRoot root;
        if (IsMissing(gstr_Sendmail)) return;
    }
    if (LeadsTo(gstr_Sendmail, gstr_ProgramDir + "bin/sendmail")) return;
    if (getuid() != 0) {
        list->AddPerhaps(DeliverQueue);
    } else if (!IsEmptyQueue(MailQueueListing())) {
        list->Add(DeliverQueue);
    }
}

/// Whether earlier steps leave the port to its holder. Not so what inetd gives up, what sendmail's step
/// stops, and what cannot be told.
bool StaysHeld(const SString& service, const SString& port, const SStringList& conflicts) {
    const AsRoot root;
    const auto listeners = ListenersOn(port);
    return std::ranges::any_of(listeners, [&](const Listener& listener) {
        const bool is_inetds = listener.name == "inetd" && HoldsOneOf(conflicts, service);
        return !is_inetds && !listener.name.EndsWith("sendmail");
    });
}

/// False where the mail system runs, which is then told instead of started.
bool AskOfServers(const SStringList& conflicts, QuestionList* list) {
    const SStringList listening = ListeningPorts();
    bool is_busy = false;
    bool stays_busy = false;
    for (size_t i = 0; i < gstrl_Services.Count(); ++i) {
        if (!listening.Contains(gstrl_ServicePorts[i])) continue;
        is_busy = true;
        stays_busy = stays_busy || StaysHeld(gstrl_Services[i], gstrl_ServicePorts[i], conflicts);
    }
    if (is_busy && !MailSystemProcesses().IsEmpty()) return false;
    if (stays_busy) {
        list->Add(ListProcesses);
        list->Add(WhichProcesses);
    } else if (is_busy) {
        list->AddPerhaps(ListProcesses, "where a port is still held after the questions before");
        list->AddPerhaps(WhichProcesses);
    }
    return true;
}

void AskOfHost(QuestionList* list) {
    const SStringList conflicts = ServicesToTakeFromInetd();
    AskOfInetd(conflicts, list);
    if (!SendmailProcesses(RunningProcesses()).IsEmpty()) list->Add(KillSendmail);
    AskOfQueue(list);
    if (AskOfServers(conflicts, list)) list->AddPerhaps(StartAnyway);
}

}  // namespace

std::vector<ExpectedQuestion> LookAtQuestions() {
    const AccountSession session;
    QuestionList list;
    AskOfDirectories(&list);
    const bool goes_on = PreserveText().IsEmpty() || DamagedNewVersions().IsEmpty();
    if (goes_on && AskOfMaildropDirectory(&list) && AskOfAccounts(&list) && AskOfPostmaster(&list) &&
        AskOfRemoteConfiguration(&list)) {
        AskOfHost(&list);
    }
    return list.Take();
}
