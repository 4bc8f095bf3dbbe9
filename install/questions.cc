#include "install/questions.h"

#include <algorithm>

namespace {

using enum QuestionId;
using enum QuestionKind;

constexpr Question kQuestions[] = {
    {Continue, YesNoQuit, "Do you want to continue? yes/no/quit ", "", "yes", "",
     "first, and again where the mailbox directory could not be made or inetd keeps mail services"},
    {YesNoOrQuit, YesNoQuit, "Please enter 'yes', 'no', or 'quit': ", "", "yes", "",
     "after another answer to \"Do you want to continue?\""},
    {SetSetgid, YesNoQuit, "Do you want the setgid bit set? yes/no/quit ", "", "yes", "FixMaildropDir",
     "where the maildrop directory lacks the setgid bit or the group's execute bit"},
    {AccountMethod, Choice, "Which method? All/Passwd/None/Quit ", "", nullptr, "AddUserAccounts", "always"},
    {SendAccountForm, YesNo, "Send an E-mail account form? yes/no ", "", "no", "AddUserAccounts",
     "where the method is none and there are eight accounts or fewer, or /etc/passwd cannot be read"},
    {MailDomains, Line, "Mail domains: ", "", nullptr, "AddUserAccounts",
     "where the method is not none and there are logins that can get accounts"},
    {AddHostName, YesNoQuit, "Add ", " to the list? yes/no/quit ", "yes", "AddUserAccounts",
     "where the mail domains lack the host's full name"},
    {ConfirmDomains, YesNo, "Is this what you want? yes/no ", "", "yes", "AddUserAccounts",
     "after the mail domains"},
    {ChangePostmaster, YesNoQuit, "Do you want to change any information? yes/no/quit ", "", "no",
     "SetupAdminAccount", "where the Postmaster account exists"},
    {PostmasterPassword, Password, "Postmaster password: ", "", "", "SetupAdminAccount",
     "where the Postmaster account is new or is to be changed"},
    {AccessDomains, Line, "Access Domains: ", "", nullptr, "SetupAdminAccount", "after the password"},
    {Postmasters, Line, "Postmasters: ", "", nullptr, "SetupAdminAccount", "after the Access Domains"},
    {ChangeRemote, YesNoQuit, "Do you want to change this information? yes/no/quit ", "", "no",
     "ConfigureFeatures", "always"},
    {WebPort, Line, "World Wide Web port for configuration: ", "", nullptr, "ConfigureFeatures",
     "where the remote configuration is to be changed"},
    {ConfirmPort80, YesNoQuit, "Are you sure you want to use port 80? yes/no/quit ", "", "yes",
     "ConfigureFeatures", "after port 80"},
    {ConfirmPort, YesNoQuit, "Is this OK? yes/no/quit ", "", "yes", "ConfigureFeatures",
     "after any other port"},
    {RemoveAccess, YesNoQuit, "Remove access restrictions for WWW configuration: yes/no/quit ", "", "no",
     "ConfigureFeatures", "after the port, where there are restrictions"},
    {AllowEmail, YesNoQuit, "Allow E-mail configuration of tern.harbor: yes/no/quit ", "", nullptr,
     "ConfigureFeatures", "where the remote configuration is to be changed"},
    {EditInetd, YesNoQuit, "Would you like this to be done for you? yes/no/quit ", "", "yes", "EditInetdConf",
     "where /etc/inetd.conf has an active mail or finger service"},
    {KillSendmail, YesNoQuit, "Kill sendmail daemon process? yes/no/quit ", "", "yes", "KillSendmail",
     "where a process runs whose name ends in sendmail"},
    {DeliverQueue, YesNoQuit, "Do you want to deliver the queue now? yes/no/quit ", "", "yes",
     "InstallSendmail", "where messages wait in the queue of the sendmail that is to be replaced"},
    {ListProcesses, YesNo, "List running processes? yes/no ", "", "yes", "KillServers",
     "where a server holds port 25, 110 or 79 and tern.harbor is not running"},
    {WhichProcesses, OptionalLine, "Which processes? ", "", "", "KillServers",
     "after \"List running processes?\""},
    {StartAnyway, YesNoQuit, "Do you want to try to start the system anyway? yes/no/quit ", "", "no",
     "StartDaemon", "where something would keep the mail system from working"},
    // Last, as it is no question of a run: its step is not in the sequence.
    {UpdateServices, YesNoQuit, "Do you want ", " updated for you? yes/no/quit ", "yes", "AddServices",
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
