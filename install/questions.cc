#include "install/questions.h"

#include <algorithm>

namespace {

using enum QuestionId;
using enum QuestionKind;

constexpr Question kQuestions[] = {
    {Continue, "Do you want to continue? yes/no/quit ", "", YesNoQuit, "yes", "",
     "first, and again where the mailbox directory could not be made or inetd keeps mail services"},
    {YesNoOrQuit, "Please enter 'yes', 'no', or 'quit': ", "", YesNoQuit, "yes", "",
     "after another answer to \"Do you want to continue?\""},
    {SetSetgid, "Do you want the setgid bit set? yes/no/quit ", "", YesNoQuit, "yes", "FixMaildropDir",
     "where the maildrop directory lacks the setgid bit or the group's execute bit"},
    {AccountMethod, "Which method? All/Passwd/None/Quit ", "", Choice, nullptr, "AddUserAccounts", "always"},
    {SendAccountForm, "Send an E-mail account form? yes/no ", "", YesNo, "no", "AddUserAccounts",
     "where the method is none and there are eight accounts or fewer, or /etc/passwd cannot be read"},
    {MailDomains, "Mail domains: ", "", Line, nullptr, "AddUserAccounts",
     "where the method is not none and there are logins that can get accounts"},
    {AddHostName, "Add ", " to the list? yes/no/quit ", YesNoQuit, "yes", "AddUserAccounts",
     "where the mail domains lack the host's full name"},
    {ConfirmDomains, "Is this what you want? yes/no ", "", YesNo, "yes", "AddUserAccounts",
     "after the mail domains"},
    {ChangePostmaster, "Do you want to change any information? yes/no/quit ", "", YesNoQuit, "no",
     "SetupAdminAccount", "where the Postmaster account exists"},
    {PostmasterPassword, "Postmaster password: ", "", Password, "", "SetupAdminAccount",
     "where the Postmaster account is new or is to be changed"},
    {AccessDomains, "Access Domains: ", "", Line, nullptr, "SetupAdminAccount", "after the password"},
    {Postmasters, "Postmasters: ", "", Line, nullptr, "SetupAdminAccount", "after the Access Domains"},
    {ChangeRemote, "Do you want to change this information? yes/no/quit ", "", YesNoQuit, "no",
     "ConfigureFeatures", "always"},
    {WebPort, "World Wide Web port for configuration: ", "", Line, nullptr, "ConfigureFeatures",
     "where the remote configuration is to be changed"},
    {ConfirmPort80, "Are you sure you want to use port 80? yes/no/quit ", "", YesNoQuit, "yes",
     "ConfigureFeatures", "after port 80"},
    {ConfirmPort, "Is this OK? yes/no/quit ", "", YesNoQuit, "yes", "ConfigureFeatures",
     "after any other port"},
    {RemoveAccess, "Remove access restrictions for WWW configuration: yes/no/quit ", "", YesNoQuit, "no",
     "ConfigureFeatures", "after the port, where there are restrictions"},
    {AllowEmail, "Allow E-mail configuration of tern.harbor: yes/no/quit ", "", YesNoQuit, nullptr,
     "ConfigureFeatures", "where the remote configuration is to be changed"},
    {EditInetd, "Would you like this to be done for you? yes/no/quit ", "", YesNoQuit, "yes", "EditInetdConf",
     "where /etc/inetd.conf has an active mail or finger service"},
    {KillSendmail, "Kill sendmail daemon process? yes/no/quit ", "", YesNoQuit, "yes", "KillSendmail",
     "where a process runs whose name ends in sendmail"},
    {DeliverQueue, "Do you want to deliver the queue now? yes/no/quit ", "", YesNoQuit, "yes",
     "InstallSendmail", "where messages wait in the queue of the sendmail that is to be replaced"},
    {ListProcesses, "List running processes? yes/no ", "", YesNo, "yes", "KillServers",
     "where a server holds port 25, 110 or 79 and tern.harbor is not running"},
    {WhichProcesses, "Which processes? ", "", OptionalLine, "", "KillServers",
     "after \"List running processes?\""},
    {StartAnyway, "Do you want to try to start the system anyway? yes/no/quit ", "", YesNoQuit, "no",
     "StartDaemon", "where something would keep the mail system from working"},
    // Last, as it is no question of a run: its step is not in the sequence.
    {UpdateServices, "Do you want ", " updated for you? yes/no/quit ", YesNoQuit, "yes", "AddServices",
     "never"},
};

constexpr bool IsInOrder() {
    for (size_t i = 0; i < std::size(kQuestions); i++) {
        if (static_cast<size_t>(kQuestions[i].id) != i) return false;
    }
    return kQuestions[std::size(kQuestions) - 1].id == UpdateServices;
}
static_assert(IsInOrder(), "a question is found by its place");

}  // namespace

std::span<const Question> Questions() {
    return std::span(kQuestions).first(std::size(kQuestions) - 1);
}

const Question& QuestionOf(QuestionId id) {
    return kQuestions[static_cast<size_t>(id)];
}

bool ShowsDefault(const Question& question) {
    return question.kind != OptionalLine && question.kind != Password;
}
