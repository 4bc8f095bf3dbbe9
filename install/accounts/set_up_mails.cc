// Writes the messages of the account step to the queue.
#include "install/accounts/set_up_mails.h"

#include "install/accounts/results_mail.h"
#include "install/record/record.h"
#include "install/visits/forward_notice.h"
#include "support/mail/field_text.h"
#include "support/mail/queue.h"
#include "support/system/clock.h"
#include "support/system/environment.h"
#include "support/system/pending_file.h"
#include "support/text/printable.h"

namespace {

SString Stem(const char* tag, const char* suffix) {
    return MessageIdDate() + tag + ProcessIdString() + suffix;
}

SString HeaderText(const SStringList& lines) {
    SString text;
    for (const SString& line : lines) text += Printable(line) + "\r\n";
    return text;
}

SString MessageId(const char* tag, const SString& host) {
    return "Message-ID: <" + MessageIdDate() + tag + "@" + host + ">";
}

/// Before any of its files is made. None of them is copied, as they grow with the logins.
void Record(const SControl& control, const SStringList& text_paths,
            const std::vector<std::string_view>& texts) {
    const auto bytes = IsRecording() ? FieldText(control, "\n") : std::nullopt;
    if (!bytes) return;
    std::vector<std::string_view> files = {bytes->Bytes()};
    files.insert(files.end(), texts.begin(), texts.end());
    KeyedSum digest(RecordKey());
    TakeMessageBytes(files, [&](std::string_view piece) { digest.Add(piece); });
    RecordChange(change::MessageQueued{control.Path(), text_paths, digest.Digits()});
}

void QueueRequest(const SString& stem, SControl* control) {
    control->PutFilename(stem);
    Record(*control, {}, {});
    static_cast<void>(control->Write(stem));
}

bool WriteMail(const SString& stem, const SString& header, const SString& body, SControl* control) {
    control->PutFilename(stem);
    Record(*control, {control->HeaderPath(), control->BodyPath()}, {header.Bytes(), body.Bytes()});
    if (!control->Prepare(stem)) return false;
    PendingFile header_file(control->HeaderPath());
    PendingFile body_file(control->BodyPath());
    if (!header_file.IsOpen() || !body_file.IsOpen()) return false;
    return header_file.Write(header) && body_file.Write(body) && header_file.Publish() &&
           body_file.Publish() && control->Publish();
}

/// The mail exists only once its text is on the disk; a failed one is removed.
void QueueMail(const SString& stem, const SString& header, const SString& body, SControl* control) {
    if (!WriteMail(stem, header, body, control)) control->RemoveMessage();
}

/// The greeting tells each new account's owner the UID and the password.
void QueueGreetingRequest(const SStringList& uids_and_passwords) {
    SControl control;
    control["Function:"] = "Account-Manager";
    control["Control-Type:"] = "Request";
    control["Priority:"] = "1";
    control["Request-Type:"] = "Greet";
    control["Account-To:"] = uids_and_passwords;
    QueueRequest(Stem(".AA", ".NewAccounts"), &control);
}

void QueueResultsMail(const AccountResults& results, const SString& host) {
    SControl control;
    control["Function:"] = "Account-Handler";
    control["Control-Type:"] = "Mail";
    control["Priority:"] = "1";
    control["Account-To:"] = "Postmaster";
    control["Host-From:"] = host;
    control["User-From:"] = "SMTP<>";
    SString header = HeaderText({"Date: " + RFC822Date(), "From: \"tern.harbor Installation Program\" <>",
                                 "To: Mail Administrator <Postmaster@" + host + ">",
                                 "Subject: tern.harbor Installation Results", MessageId(".AB", host)});
    QueueMail(Stem(".AB", ".Notify"), header, ResultsMailBody(results), &control);
}

void QueueForwardNotice(const SStringList& forward_users, const SString& host) {
    SStringList recipients = forward_users;
    recipients.Grep("s/(.*)/SMTP <$1>/");
    SControl control;
    control["Function:"] = "Account-Handler";
    control["Control-Type:"] = "Mail";
    control["Priority:"] = "1";
    control["Channel-To:"] = recipients;
    control["Host-From:"] = host;
    control["User-From:"] = "SMTP<Postmaster@" + host + ">";
    SString header =
        HeaderText({"Date: " + RFC822Date(), "From: Mail Administrator <Postmaster@" + host + ">",
                    "To: Users with forward files: ;", "Subject: NOTICE: \".forward\" File Deactivated",
                    MessageId(".AC", host)});
    SString body = pz_ForwardMessage1 + Printable(host) + pz_ForwardMessage2;
    QueueMail(Stem(".AC", ".Notify"), header, body, &control);
}

}  // namespace

void QueueSetUpMails(const AccountResults& results, const SString& host) {
    const bool has_forwards = !results.forward_users.IsEmpty();
    const bool has_results = !results.created.IsEmpty() || !results.skipped_logins.IsEmpty() || has_forwards;
    if (!results.created.IsEmpty()) QueueGreetingRequest(results.uids_and_passwords);
    if (has_results) QueueResultsMail(results, host);
    if (has_forwards) QueueForwardNotice(results.forward_users, host);
}

void SendNewAccountForm() {
    SControl control;
    control["Function:"] = "Account-Manager";
    control["Control-Type:"] = "Request";
    control["Request-Type:"] = "NewAccountForm";
    control["Priority:"] = "1";
    QueueRequest("NewAccountForm." + ProcessIdString(), &control);
}
