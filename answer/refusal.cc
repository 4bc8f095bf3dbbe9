#include "answer/refusal.h"

#include <algorithm>

#include "answer/keys.h"
#include "install/mail_system/remote_settings.h"
#include "install/postmaster/dialogue.h"
#include "support/system/host.h"
#include "support/text/printable.h"

namespace {

/// The letters that a question with a choice takes; none for a line of text.
SString Letters(const Question& question) {
    if (question.kind == QuestionKind::YesNoQuit) return "ynq";
    if (question.kind == QuestionKind::YesNo) return "yn";
    if (question.kind != QuestionKind::Choice) return "";
    SString letters;
    for (const SString& word : SString(question.text).M("(\\w+(?:/\\w+)+) $").Get(0).Split('/')) {
        letters += SString(word).LowerCase()[0];
    }
    return letters;
}

bool FitsChoice(const Question& question, const SString& answer) {
    const SString letters = Letters(question);
    return letters.IsEmpty() || letters.Index(SString(answer).LowerCase()[0]) >= 0;
}

bool AreAll(bool (*is_valid)(const SString&), const SString& answer) {
    const SStringList entries = answer.Split("[\\s,]+").Grep("/\\S/");
    return !entries.IsEmpty() && std::ranges::all_of(entries, is_valid);
}

/// Each entry by the rule of the step that asks, which would leave out or refuse what is invalid.
bool FitsLine(const Question& question, const SString& answer) {
    switch (question.id) {
        case QuestionId::MailDomains:
            return AreAll(IsValidDomain, answer);
        case QuestionId::AccessDomains:
            return AreAll(IsAccessDomain, answer);
        case QuestionId::WebPort:
            return IsPort(PortNumber(answer));
        default:
            return true;
    }
}

}  // namespace

SString Refusal(const Question& question, const SString& answer) {
    if (Printable(answer, "\t") != answer) return "the answer holds a control character";
    if (question.kind == QuestionKind::Password) {
        return IsGoodPassword(answer)
                   ? ""
                   : "a password has at least 6 characters and does not begin with a blank";
    }
    if (answer.IsEmpty() || (FitsChoice(question, answer) && FitsLine(question, answer))) return "";
    return "this is no answer to \"" + KeyOf(question) + "\"";
}
