// The one table of the questions that Install asks: its prompts are printed from it, and an answer file's
// keys are looked up in it.
//
//     Add mail.example.com to the list? yes/no/quit [yes]
//     `--' `--------------' `-------------------------'
//     text      value               rest               and the default, where it is shown
#pragma once

#include <span>
#include <string_view>

enum class QuestionKind {
    YesNoQuit,
    YesNo,
    Choice,        // "All/Passwd/None/Quit": the first letter counts
    Line,          // shows its default
    OptionalLine,  // shows none: Return is no answer
    Password,      // shows none, and what is typed must not be kept
};

enum class QuestionId {
    Continue,
    YesNoOrQuit,
    SetSetgid,
    AccountMethod,
    SendAccountForm,
    MailDomains,
    AddHostName,
    ConfirmDomains,
    ChangePostmaster,
    PostmasterPassword,
    AccessDomains,
    Postmasters,
    ChangeRemote,
    WebPort,
    ConfirmPort80,
    ConfirmPort,
    RemoveAccess,
    AllowEmail,
    EditInetd,
    KillSendmail,
    DeliverQueue,
    ListProcesses,
    WhichProcesses,
    StartAnyway,
    UpdateServices,
};

struct Question {
    QuestionId id;
    QuestionKind kind;
    std::string_view text;       // as printed, up to the value in it; no other question begins with it
    std::string_view rest;       // as printed after the value; empty: there is no value
    const char* default_answer;  // null: the host or the site decides
    std::string_view
        step;  // its name in Sequence; empty: before the steps, and where one left something undone
    std::string_view when;  // what must hold for it to be asked, after "asked"
};

/// All that a run can ask, in the order of the sequence.
std::span<const Question> Questions();
const Question& QuestionOf(QuestionId id);
/// Whether the default follows the text, in square brackets.
bool ShowsDefault(const Question& question);
